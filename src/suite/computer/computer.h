#pragma once

#include "services/platform.h"

#include <string>
#include <vector>

namespace qndr::suite {

/// One computer: the name it goes by and the places where everything that it owns lies. Paths have the platform's
/// separator and no separator at their end. The folders are made by those who write into them.
struct Computer {
    std::string name;
    std::string registryFile;
    std::string commonApplicationData;
    std::string localRoot; ///< local root folders of the companies lie below it, one per .psd base name
    std::string temporaryFolder;
    /// Where working files go instead, in this order, when somebody else has made the temporary folder.
    std::vector<std::string> otherTemporaryFolders = {};

    /// The computer that the environment describes: QNDR_HOME makes one folder a whole computer, otherwise the XDG
    /// folders are taken; QNDR_COMPUTER_NAME overrides the host name. Raises services::Failure when no home is
    /// known.
    static Computer FromEnvironment();
    /// A whole computer in one folder, as QNDR_HOME gives it.
    static Computer InFolder(const std::string& folder, const std::string& name);
};

} // namespace qndr::suite
