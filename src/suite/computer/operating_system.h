#pragma once

#include "suite/computer/computer.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the suite asks of the operating system beside files and time. One implementation for each platform.
namespace qndr::suite {

/// The name by which the operating system knows this computer; empty when it does not tell.
std::string HostName();

/// The name of the user whose program this is, or what else tells users apart.
std::string UserName();

/// Whatever this process makes from now on, by itself or through a library, is for this user alone, whatever mask
/// it was started with. What others shall use is opened to them file by file.
void KeepNewFilesPrivate();

/// Lets what a large block of memory took go back to the system with it. Otherwise a process that has read one
/// large record would keep its room, several times.
void ReturnLargeBlocks();

/// Gives back to the system what this process does not use at the moment.
void ReturnUnusedMemory();

/// The places that the platform's habits give to this user's programs. Raises services::Failure when no home is
/// known.
Computer UsualPlaces(const std::string& name);

/// The folder of the running program, without a separator at its end; empty when the system does not tell.
std::string RunningProgramFolder();

/// The file names of the programs that run at this moment, with extension and without folder; none when the system
/// does not tell. Off Windows the system keeps no more than 15 bytes of each.
std::vector<std::string> RunningProcessNames();

/// 64 random bits of the system's own source. Raises services::Failure when it has none to give.
std::uint64_t RandomBits();

/// Milliseconds since 1 January 1970 UTC by the system's clock, which may be put back.
std::uint64_t UnixMilliseconds();

/// 16 random characters, 0-9 and a-f, for names of files that nobody else takes or guesses.
std::string RandomToken();

} // namespace qndr::suite
