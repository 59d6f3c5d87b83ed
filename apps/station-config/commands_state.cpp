// folder-set, folder-remove, relation-set, relation-remove: storage folders and sequence I/O
// relations brought to a wanted state, through the registry and the service as the settings
// application changes them (these sections are rebuilt by the library at every save, so `set`
// cannot write them).
//
// Each command says whether it changed anything ("unchanged" saves nothing and keeps no
// version); --check says what it would change and changes nothing. With --json:
// {"changed", "before", "after"}, an absent folder or relation being null. Passwords are never
// printed: "********", "******** (changed)" when the wanted one differs.
#include "commands.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>
#include <QUuid>

#include "arguments.h"
#include "d_zu_configuration.h"
#include "directories.h"
#include "folder.h"
#include "station.h"
#include "utilities/olm_sequenceiorelation.h"

namespace {
const QString C_noRole = QStringLiteral("undefined");
const QString C_masked = QStringLiteral("********");

bool isCheck(const CommandContext& context)
{
    return context.options.isSet(QStringLiteral("check"));
}

int report(const CommandContext& context, const QString& what, const QJsonValue& before, const QJsonValue& after)
{
    const bool changed = before != after;
    if (context.json) {
        out() << QJsonDocument(QJsonObject { { "changed", changed }, { "check", isCheck(context) }, { "before", before },
                                             { "after", after } })
                     .toJson(QJsonDocument::Indented);
    } else {
        out() << what << ": "
              << (!changed ? QStringLiteral("unchanged")
                           : isCheck(context) ? QStringLiteral("would change") : QStringLiteral("changed"))
              << "\n";
    }
    return CeExitSuccess;
}

// Saves what the registry or the service now holds; the exit code.
int save(Station& station, const QString& reason)
{
    QString error;
    const Station::EnSaveResult result = station.save(reason, error);
    if (result == Station::CeSaved)
        return CeExitSuccess;
    err() << "station-config: " << error << "\n";
    return result == Station::CeUnusable ? CeExitUnusable : CeExitFailed;
}

// The wanted folder: JSON text, or "-" to read it from standard input (keeps a password off
// the command line).
bool readWanted(const QString& argument, QJsonObject& wanted, QString& reason)
{
    QByteArray text = argument.toUtf8();
    if (argument == QLatin1String("-")) {
        QFile input;
        if (!input.open(stdin, QIODevice::ReadOnly)) {
            reason = QStringLiteral("cannot read standard input");
            return false;
        }
        text = input.readAll();
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject()) {
        reason = error.error != QJsonParseError::NoError ? QStringLiteral("not JSON (%1)").arg(error.errorString())
                                                         : QStringLiteral("not a JSON object");
        return false;
    }
    wanted = document.object();
    return true;
}

QStringList roleKeys()
{
    QStringList roles { C_noRole };
    for (const QVariantMap& alias : Directories::c_defaultAliases)
        roles << alias.value(QStringLiteral("id")).toString();
    return roles;
}

// Checks the wanted folder's fields: names, types, allowed values. The reason otherwise.
bool checkFolder(const QJsonObject& wanted, QString& reason)
{
    static const QStringList texts { "aliasName", "type", "path", "domain", "address", "identifier", "password", "role" };
    for (auto it = wanted.begin(); it != wanted.end(); ++it) {
        const bool known = texts.contains(it.key()) || it.key() == QLatin1String("enabled");
        if (!known) {
            reason = QStringLiteral("unknown field '%1' (fields: %2, enabled)").arg(it.key(), texts.join(QStringLiteral(", ")));
            return false;
        }
        if (it.key() == QLatin1String("enabled") ? !it->isBool() : !it->isString()) {
            reason = QStringLiteral("'%1' must be %2").arg(it.key(), it.key() == QLatin1String("enabled") ? "true or false" : "a text");
            return false;
        }
    }
    const QString type = wanted.value(QStringLiteral("type")).toString();
    if (wanted.value(QStringLiteral("aliasName")).toString().trimmed().isEmpty())
        reason = QStringLiteral("'aliasName' is missing");
    else if (!QStringList { "internal", "external", "samba" }.contains(type))
        reason = QStringLiteral("'type' must be internal, external or samba");
    else if (type == QLatin1String("samba") && wanted.value(QStringLiteral("address")).toString().trimmed().isEmpty())
        reason = QStringLiteral("a samba folder needs an 'address'");
    else if (type == QLatin1String("samba") && wanted.value(QStringLiteral("path")).toString().trimmed().isEmpty())
        reason = QStringLiteral("a samba folder needs a share 'path'");
    else if (wanted.contains(QStringLiteral("role")) && !roleKeys().contains(wanted.value(QStringLiteral("role")).toString()))
        reason = QStringLiteral("'role' must be one of %1").arg(roleKeys().join(QStringLiteral(", ")));
    return reason.isEmpty();
}

// A folder's fields as they are compared, the password in clear; the network fields only for a
// network folder (the registry ignores them for the others).
QJsonObject folderState(const QString& alias, const QString& type, const QString& path, bool enabled,
                        const QString& role, const QString& domain, const QString& address,
                        const QString& identifier, const QString& password)
{
    QJsonObject state { { "aliasName", alias }, { "type", type }, { "path", path }, { "enabled", enabled }, { "role", role } };
    if (type == QLatin1String("samba")) {
        state.insert(QStringLiteral("domain"), domain);
        state.insert(QStringLiteral("address"), address);
        state.insert(QStringLiteral("identifier"), identifier);
        state.insert(QStringLiteral("password"), password);
    }
    return state;
}

QJsonObject currentState(Directories* directories, const Folder& folder)
{
    return folderState(folder.aliasName(), folder.type(), folder.path(), folder.isEnabled(),
                       directories->getRoleOfFolder(folder.id()), folder.domain(), folder.address(),
                       folder.identifier(), folder.password());
}

// Both states as shown: passwords masked, a changed one marked.
void mask(QJsonValue& before, QJsonValue& after)
{
    const QString key = QStringLiteral("password");
    QJsonObject shownBefore = before.toObject();
    QJsonObject shownAfter = after.toObject();
    if (shownBefore.contains(key))
        shownBefore.insert(key, C_masked);
    if (shownAfter.contains(key))
        shownAfter.insert(key, before.toObject().value(key) == after.toObject().value(key) ? C_masked
                                                                                            : C_masked + QStringLiteral(" (changed)"));
    if (before.isObject())
        before = shownBefore;
    if (after.isObject())
        after = shownAfter;
}

QSharedPointer<Folder> folderNamed(Directories* directories, const QString& alias)
{
    bool found = false;
    QSharedPointer<Folder> folder = directories->getFolderByName(alias, found);
    return found ? folder : QSharedPointer<Folder>();
}

QJsonValue relationState(DZuConfiguration* config, int code, int& index)
{
    index = -1;
    if (!config->checkSeqRelationExist(code, index))
        return QJsonValue::Null;
    const auto relation = config->sequenceIoRelations()->list().at(index);
    return QJsonObject { { "binaryCode", code }, { "sequenceBaseName", relation ? relation->sequenceBaseName() : QString() } };
}

// A binary code argument: a whole number of at least 1; -1 with a usage message otherwise.
int binaryCode(const QString& text)
{
    bool ok = false;
    const int code = text.toInt(&ok);
    if (ok && code >= 1)
        return code;
    err() << "station-config: '" << text << "' is not a binary code (a whole number of at least 1)\nTry 'station-config --help'.\n";
    return -1;
}
}

int cmdFolderSet(CommandContext& context)
{
    QJsonObject wanted;
    QString reason;
    if (!readWanted(context.arguments.first(), wanted, reason) || !checkFolder(wanted, reason)) {
        err() << "station-config: folder-set: " << reason << "; nothing was changed\n";
        return CeExitFailed;
    }
    Directories* directories = context.station.configuration()->directories();
    const QString alias = wanted.value(QStringLiteral("aliasName")).toString();
    const QSharedPointer<Folder> folder = folderNamed(directories, alias);
    if (folder && QUuid(folder->id()).isNull()) {
        err() << "station-config: " << alias << " is a built-in folder; it cannot be changed\n";
        return CeExitFailed;
    }
    QJsonValue before = folder ? QJsonValue(currentState(directories, *folder)) : QJsonValue(QJsonValue::Null);
    const auto field = [&](const char* name) { return wanted.value(QLatin1String(name)).toString(); };
    const QString role = wanted.contains(QStringLiteral("role")) ? field("role")
                                                                  : before.toObject().value(QStringLiteral("role")).toString(C_noRole);
    const bool enabled = wanted.value(QStringLiteral("enabled")).toBool(true);
    QJsonValue after = folderState(alias, field("type"), field("path"), enabled, role, field("domain"), field("address"),
                                   field("identifier"), field("password"));
    const bool changed = before != after;
    if (changed && !isCheck(context)) {
        const QString error = directories->setFolderAlias(folder ? folder->id() : QString(), role, field("type"), alias,
                                                          field("path"), field("domain"), field("address"),
                                                          field("identifier"), field("password"), enabled);
        if (!error.isEmpty()) {
            err() << "station-config: " << alias << ": " << error << "\n";
            return CeExitFailed;
        }
        if (const int code = save(context.station, QStringLiteral("folder-set ") + alias))
            return code;
    }
    mask(before, after);
    return report(context, QStringLiteral("folder ") + alias, before, after);
}

int cmdFolderRemove(CommandContext& context)
{
    const QString alias = context.arguments.first();
    Directories* directories = context.station.configuration()->directories();
    const QSharedPointer<Folder> folder = folderNamed(directories, alias);
    if (!folder)
        return report(context, QStringLiteral("folder ") + alias, QJsonValue::Null, QJsonValue::Null);
    if (QUuid(folder->id()).isNull()) {
        err() << "station-config: " << alias << " is a built-in folder; it cannot be removed\n";
        return CeExitFailed;
    }
    QJsonValue before = currentState(directories, *folder);
    if (!isCheck(context)) {
        // The role goes back to its built-in folder first: removing alone would leave it pointing nowhere.
        if (directories->getRoleOfFolder(folder->id()) != C_noRole)
            directories->setFolderAlias(folder->id(), C_noRole, folder->type(), folder->aliasName(), folder->path(),
                                        folder->domain(), folder->address(), folder->identifier(), folder->password(),
                                        folder->isEnabled());
        directories->selectFolder(directories->folders()->list().indexOf(folder));
        directories->deleteSelectedFolder();
        if (folderNamed(directories, alias)) {
            err() << "station-config: " << alias << " was not removed\n";
            return CeExitFailed;
        }
        if (const int code = save(context.station, QStringLiteral("folder-remove ") + alias))
            return code;
    }
    QJsonValue after = QJsonValue::Null;
    mask(before, after);
    return report(context, QStringLiteral("folder ") + alias, before, after);
}

int cmdRelationSet(CommandContext& context)
{
    const int code = binaryCode(context.arguments.at(0));
    if (code < 0)
        return CeExitUsage;
    const QString name = context.arguments.at(1).trimmed();
    if (name.isEmpty()) {
        err() << "station-config: relation-set: the sequence name is empty; nothing was changed\n";
        return CeExitFailed;
    }
    DZuConfiguration* config = context.station.configuration();
    int index = -1;
    const QJsonValue before = relationState(config, code, index);
    const QJsonValue after = QJsonObject { { "binaryCode", code }, { "sequenceBaseName", name } };
    if (before != after && !isCheck(context)) {
        if (index >= 0)
            config->editSequenceIoRelation(index, code, name);
        else if (!config->addSequenceIoRelation(code, name)) {
            err() << "station-config: the configuration service refused the relation " << code << "\n";
            return CeExitFailed;
        }
        if (const int result = save(context.station, QStringLiteral("relation-set %1").arg(code)))
            return result;
    }
    return report(context, QStringLiteral("relation %1").arg(code), before, after);
}

int cmdRelationRemove(CommandContext& context)
{
    const int code = binaryCode(context.arguments.at(0));
    if (code < 0)
        return CeExitUsage;
    DZuConfiguration* config = context.station.configuration();
    int index = -1;
    const QJsonValue before = relationState(config, code, index);
    if (index >= 0 && !isCheck(context)) {
        config->removeSequenceIoRelation(index);
        if (const int result = save(context.station, QStringLiteral("relation-remove %1").arg(code)))
            return result;
    }
    return report(context, QStringLiteral("relation %1").arg(code), before, QJsonValue::Null);
}
