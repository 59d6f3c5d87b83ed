#pragma once
#include <QJsonObject>
#include <QStringList>
#include <QTextStream>

#include <functional>

class Arguments;
class Station;

// Exit codes of every command.
enum EnExitCode {
    CeExitSuccess = 0,
    CeExitFailed = 1,     // the operation failed
    CeExitUsage = 2,      // unknown option, malformed value, wrong arguments
    CeExitUnusable = 3,   // the settings document cannot serve; nothing was changed
    CeExitTimedOut = 4,   // a wait ran out of time
};

// One sub-command of station-config. Returns the process exit code.
struct CommandContext {
    Station& station;
    QStringList arguments;        // positional arguments after the command name
    const Arguments& options;
    bool json = false;
};

// The value as the user may see it: passwords masked unless --show-secrets was given.
QJsonValue shown(const CommandContext& context, const QJsonValue& value, const QString& key = QString());

QTextStream& out();
QTextStream& err();
// Prints a JSON object either as indented JSON or as "section / key value" lines.
void printReport(const QJsonObject& report, bool json);
// Runs the event loop until `done()` is true or `timeoutMs` passed; false on time-out.
bool waitUntil(const std::function<bool()>& done, int timeoutMs);

// Waits until every enabled network folder is connected or has failed for good (its alias in
// `failedPermanently`, which this fills from the registry's error signal), at most `timeoutMs`.
class Directories;
template <typename T> class QSet;
bool waitForNetworkFolders(Directories* directories, QSet<QString>& failedPermanently, int timeoutMs);
// Aliases of the enabled network folders that are not connected, but those in `except`.
QStringList unconnectedShares(Directories* directories, const QSet<QString>& except);

// Can a TCP connection reach ADDRESS ("host" or "host:port", port 445 by default)? The
// system's reason when it cannot.
bool serverReachable(const QString& address, QString& reason);

int cmdStatus(CommandContext& context);
int cmdPaths(CommandContext& context);
int cmdSync(CommandContext& context);
int cmdTimezones(CommandContext& context);
int cmdTemplates(CommandContext& context);
int cmdStorage(CommandContext& context);
int cmdApplyUpdate(CommandContext& context);
int cmdTestShare(CommandContext& context);
int cmdFolders(CommandContext& context);
int cmdGet(CommandContext& context);
int cmdSet(CommandContext& context);
int cmdUnset(CommandContext& context);
int cmdKeys(CommandContext& context);
int cmdList(CommandContext& context);
int cmdHistory(CommandContext& context);
int cmdDiff(CommandContext& context);
int cmdRollback(CommandContext& context);
int cmdDoctor(CommandContext& context);
int cmdExportUpdate(CommandContext& context);
int cmdCompare(CommandContext& context);
int cmdFolderSet(CommandContext& context);
int cmdFolderRemove(CommandContext& context);
int cmdRelationSet(CommandContext& context);
int cmdRelationRemove(CommandContext& context);
