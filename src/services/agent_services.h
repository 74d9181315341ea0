#pragma once

#include "services/array_tools.h"
#include "services/command_line_tools.h"
#include "services/file_tools.h"
#include "services/ini_tools.h"
#include "services/object_factory.h"
#include "services/path_tools.h"
#include "services/platform.h"
#include "services/registry_tools.h"
#include "services/system_tools.h"
#include "services/text_file_tools.h"

namespace qndr::services {

/// Hears every line that the agent reports, whether the log is on or not.
class ReportListener {
  public:
    virtual ~ReportListener() = default;
    virtual void LineReported(const std::string& message) = 0;
};

/// Everything that an agent asks of the outside. The objects belong to whoever started the agent and outlive it.
struct AgentServices {
    ObjectFactory& objects;
    CommandLineTools& commandLineTools;
    RegistryTools& registryTools;
    FileTools& fileTools;
    PathTools& pathTools;
    IniTools& iniTools;
    TextFileTools& textFileTools;
    StringArrayTools& stringArrayTools;
    ArrayTools& arrayTools;
    SystemTools& systemTools;
    SpecialFolderTools& specialFolderTools;
    Clock& clock;
    MessagePump& messages;
    WaitableTimers& timers;
    FileVersions& fileVersions;
    TextAppender& textAppender;
    ProgramFacts& program;
    Processes& processes;
    ReportListener* reports = nullptr; ///< nobody listens when null
};

} // namespace qndr::services
