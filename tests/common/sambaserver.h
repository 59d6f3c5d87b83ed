#pragma once
#include <QString>
#include <QtGlobal>
#include <memory>

class QProcess;
class QTemporaryDir;

// A private Samba server (smbd) on 127.0.0.1 for share tests: its own smb.conf, state and
// log directories in a temporary directory, a free port picked at the first start and kept
// across stop()/start() (so a client can reconnect), a writable share and a read-only
// share, and one Unix/Samba user ("stationtest", created when missing; needs root). Files
// written through the writable share belong to root on the server side.
//
//     if (!SambaServer::available())
//         QSKIP("smbd is not installed");
//     SambaServer server;
//     QVERIFY2(server.start(), qPrintable(server.errorString()));
//     // connect to server.address() ("127.0.0.1:<port>"), share server.shareName(),
//     // user server.user(), password server.password(); files land in server.shareDirectory().
//     server.stop();   // also done by the destructor
class SambaServer
{
public:
    SambaServer();
    ~SambaServer();
    SambaServer(const SambaServer&) = delete;
    SambaServer& operator=(const SambaServer&) = delete;

    // True when smbd and smbpasswd are installed and the test user exists or can be created.
    static bool available();

    // Starts smbd and waits until it accepts connections (false and errorString() otherwise).
    // Starting a running server does nothing and returns true.
    bool start();
    // SIGTERM, waits for smbd and its connection processes to end.
    void stop();
    bool isRunning() const;

    QString address() const;            // "127.0.0.1:<port>"
    quint16 port() const;
    QString shareName() const;          // writable share
    QString shareDirectory() const;     // server-side directory of the writable share
    QString readOnlyShareName() const;
    QString readOnlyShareDirectory() const;
    QString user() const;
    QString password() const;
    QString errorString() const;

private:
    bool prepare();
    bool ensureUser();
    bool portIsFree(quint16 port) const;
    bool accepting() const;
    QString logTail() const;
    void killStragglers();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    quint16 m_port = 0;
    int m_sessionId = 0;
    QString m_password;
    QString m_error;
    bool m_prepared = false;
};
