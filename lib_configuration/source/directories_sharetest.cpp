// Directories: network share connection test (mount a temporary folder, then write, read,
// compare and delete a probe file in it).
#include "directories.h"
#include "directories_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

#include "utilities/logline.h"

using namespace DirectoriesLiterals;

namespace {

const QString C_networkType = QStringLiteral("samba");
const QString C_testFolderName = QStringLiteral("__TEST_CONNECTION__");
const QString C_probeFileName = QStringLiteral("__TEST_CONNECTION__.txt");
const QString C_probeContentPrefix = QStringLiteral("Velquist connection test - ");
constexpr int C_testPollingIntervalMs = 5000;
constexpr int C_testTimeLimitMs = 10000;
constexpr int C_fileTestDelayMs = 100;
constexpr int C_resultDelayMs = 100;
}

void Directories::testFolderConnection(QString address, QString domain, QString identifier, QString password,
                                       QString path)
{
    // A refused request leaves the running test alone: its timer keeps running and
    // testInProgress gets its previous value back after the two notifications.
    const bool busy = !m_testFolder.isNull() || m_cleanupInProgress;
    const bool wasInProgress = m_testInProgress;
    if (!busy)
        m_testTimer.stop();
    m_testInProgress = true;
    emit testInProgressChanged();

    if (busy) {
        m_testInProgress = wasInProgress;
        emit testInProgressChanged();
        //% "The previous test is still cleaning up; try again in a moment"
        emit testConnectionResult(false, qtTrId("Directories_Previous_test_still_cleaning_up"));
        return;
    }

    // An interrupted test may have left its (empty) mount point behind. Without a mount
    // root there is nothing to look at (the name would resolve in the working directory).
    const QString mountRoot = getMountingStorageDirectoryPath();
    const QString orphanPath = QDir(mountRoot).filePath(C_testFolderName);
    if (!mountRoot.isEmpty() && QFileInfo::exists(orphanPath) && !QDir().rmdir(orphanPath)) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("[Directories] WARNING: Could not remove orphaned test directory:"),
                          orphanPath + QStringLiteral(" - it may not be empty. Manual cleanup required."));
    }

    // Configured disabled, so that nothing mounts before its signals are connected (the share
    // manager reports a bad address at once, inside start()); enabling it below mounts it.
    m_testFolder = Folder::configure(C_networkType, C_testFolderName, C_testFolderName, path, domain, address,
                                     identifier, password, false, false, C_testPollingIntervalMs);
    if (m_testFolder.isNull()) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("ERROR: Failed to create test folder"));
        m_testInProgress = false;
        emit testInProgressChanged();
        //% "Failed to create the test folder"
        emit testConnectionResult(false, qtTrId("Directories_Failed_to_create_test_folder"));
        return;
    }

    connect(m_testFolder.data(), &Folder::availabilityChanged, this, [this](const QString&, bool availability) {
        if (availability) {
            emit testConnectionStep(QStringLiteral("mount"), true, m_testFolder->mountedPath());
            QTimer::singleShot(C_fileTestDelayMs, this, &Directories::testFileOperations);
        } else if (m_testInProgress)
            cleanupTestFolder();
    });
    connect(m_testFolder.data(), &Folder::folderConnectionFailed, this,
            [this](const QString&, const QString& errorMessage, bool) {
                m_testResult = false;
                //% "Connection failed: %1"
                m_testMessage = qtTrId("Directories_Connection_failed").arg(errorMessage);
                emit testConnectionStep(QStringLiteral("mount"), false, errorMessage);
                cleanupTestFolder();
            });

    disconnect(m_testTimerConnection);
    m_testTimerConnection = connect(&m_testTimer, &QTimer::timeout, this, [this]() {
        if (!m_testFolder.isNull() && m_testInProgress) {
            m_testResult = false;
            //% "Connection timed out"
            m_testMessage = qtTrId("Directories_Connection_timeout");
            emit testConnectionStep(QStringLiteral("mount"), false, m_testMessage);
            cleanupTestFolder();
        }
    });
    m_testTimer.setSingleShot(true);
    m_testTimer.start(C_testTimeLimitMs);

    // A failure reported at once ends the test right here (cleanup stops the timer again).
    m_testFolder->update(C_networkType, C_testFolderName, path, domain, address, identifier, password, true, false);
}

void Directories::setTestResult(bool success, const QString& message)
{
    m_testResult = success;
    m_testMessage = message;
}

void Directories::testFileOperations()
{
    if (m_testFolder.isNull()) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("[testFileOperations] No test folder available"));
        //% "Internal error: the test folder disappeared"
        setTestResult(false, qtTrId("Directories_Internal_error_test_folder_disappeared"));
        cleanupTestFolder();
        return;
    }

    const QString mountPath = m_testFolder->mountedPath();
    if (mountPath.isEmpty() || !QFileInfo::exists(mountPath)) {
        LogLine::critical(this, C_sourceFile, __LINE__,
                          QStringLiteral("[testFileOperations] Mount point not available:"), mountPath);
        //% "The mount point is not accessible"
        setTestResult(false, qtTrId("Directories_Mount_point_not_accessible"));
        emit testConnectionStep(QStringLiteral("write"), false, m_testMessage);
        cleanupTestFolder();
        return;
    }

    QFile probe(QDir(mountPath).filePath(C_probeFileName));
    const QString content = C_probeContentPrefix + QDateTime::currentDateTime().toString(Qt::ISODate);

    if (!probe.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        //% "Cannot write to the share: %1"
        setTestResult(false, qtTrId("Directories_Cannot_write_to_share").arg(probe.errorString()));
        emit testConnectionStep(QStringLiteral("write"), false, probe.errorString());
        cleanupTestFolder();
        return;
    }
    {
        QTextStream out(&probe);
        out << content;
    }
    probe.close();
    emit testConnectionStep(QStringLiteral("write"), true, probe.fileName());

    if (!probe.open(QIODevice::ReadOnly | QIODevice::Text)) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("[testFileOperations] Failed to read test file:"),
                          probe.errorString());
        //% "Cannot read from the share: %1"
        setTestResult(false, qtTrId("Directories_Cannot_read_from_share").arg(probe.errorString()));
        emit testConnectionStep(QStringLiteral("read"), false, probe.errorString());
        cleanupTestFolder();
        return;
    }
    QString readBack;
    {
        QTextStream in(&probe);
        readBack = in.readAll();
    }
    probe.close();
    emit testConnectionStep(QStringLiteral("read"), true, QString());

    // On a mismatch the probe file stays where it is, as after a failed read.
    if (readBack != content) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("[testFileOperations] Content mismatch"));
        //% "Data verification failed: the file read back differs from the file written"
        setTestResult(false, qtTrId("Directories_Data_verification_failed"));
        emit testConnectionStep(QStringLiteral("compare"), false, m_testMessage);
        cleanupTestFolder();
        return;
    }
    emit testConnectionStep(QStringLiteral("compare"), true, QString());

    if (!probe.remove()) {
        LogLine::critical(this, C_sourceFile, __LINE__, QStringLiteral("[testFileOperations] Failed to delete test file:"),
                          probe.errorString());
        //% "Cannot delete from the share: %1"
        setTestResult(false, qtTrId("Directories_Cannot_delete_from_share").arg(probe.errorString()));
        emit testConnectionStep(QStringLiteral("delete"), false, probe.errorString());
        cleanupTestFolder();
        return;
    }

    emit testConnectionStep(QStringLiteral("delete"), true, QString());
    //% "Connection successful"
    setTestResult(true, qtTrId("Directories_Connection_successful"));
    cleanupTestFolder();
}

void Directories::cleanupTestFolder()
{
    m_testTimer.stop();
    m_testInProgress = false;
    m_cleanupInProgress = true;
    emit testInProgressChanged();

    if (m_testFolder.isNull()) {
        m_cleanupInProgress = false;
        return;
    }

    disconnect(m_testFolder.data(), &Folder::availabilityChanged, this, nullptr);
    disconnect(m_testFolder.data(), &Folder::folderConnectionFailed, this, nullptr);

    // Cleanup may run inside a signal of the folder or of its share manager: the last
    // reference goes from the event loop, which destroys the folder and unmounts the share
    // before the result below is reported.
    QSharedPointer<Folder> released;
    released.swap(m_testFolder);
    QTimer::singleShot(0, this, [released]() mutable { released.reset(); });

    const bool result = m_testResult;
    const QString message = m_testMessage;
    QTimer::singleShot(C_resultDelayMs, this, [this, result, message]() {
        m_cleanupInProgress = false;
        emit testConnectionResult(result, message);
    });
}
