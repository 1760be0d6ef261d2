#pragma once

#include <QStringList>

class QTextStream;

namespace velmora {

// The command line's work until the composer window exists: stage the given files and folders
// for a share and report what a composer would be filled with.
class StagingCommand {
public:
    enum ExitCode { Success = 0, UsageError = 2, SomeNotStaged = 4 };

    // Parses arguments (argv without the program name), applies --container and --bundle-id,
    // stages the items and writes the report to out (errors to err).
    static int run(const QStringList& arguments, QTextStream& out, QTextStream& err);
};

} // namespace velmora
