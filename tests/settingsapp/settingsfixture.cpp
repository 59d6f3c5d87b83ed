#include "settingsfixture.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include "d_zu_configuration.h"
#include "settingsapp.h"
#include "station.h"
#include "utilities/guiengine.h"


SettingsFixture::SettingsFixture() = default;

void SettingsFixture::pointSeamsAtStandIns() const
{
    DZuConfiguration::setTimeZoneCommand(QStringLiteral("/bin/true"));
    DZuConfiguration::setCompositorConfigPath(m_directory.filePath(QStringLiteral("no-compositor/weston.ini")));
}

SettingsFixture::~SettingsFixture() = default;

QString SettingsFixture::documentPath() const
{
    // As the demo station's pre-configuration names it.
    return m_directory.filePath(QStringLiteral("config/settings.json"));
}

bool SettingsFixture::start(QString& error, const std::function<bool(const QString& documentPath)>& prepare)
{
    if (!m_directory.isValid() || !Station::copyDirectory(QStringLiteral(STATION_DEMO_DIR), m_directory.path())) {
        error = QStringLiteral("cannot copy the demo station");
        return false;
    }
    if (prepare && !prepare(documentPath())) {
        error = QStringLiteral("cannot prepare the settings document");
        return false;
    }
    pointSeamsAtStandIns();
    if (!SettingsApp::installCatalogue(*QCoreApplication::instance())) {
        error = QStringLiteral("the English catalogue was not built");
        return false;
    }

    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_guiEngine = std::make_unique<GuiEngine>(m_engine.get());
    m_station = std::make_unique<Station>(m_directory.path());
    if (!m_station->open(true, error))
        return false;
    // The station's pre-configuration may name its own programs; the screens keep to ours.
    pointSeamsAtStandIns();
    m_app = std::make_unique<SettingsApp>(*m_station);
    if (!m_app->load(*m_engine) || !window()) {
        error = QStringLiteral("the main window did not load");
        return false;
    }
    return true;
}

QQuickWindow* SettingsFixture::window() const
{
    return m_engine && !m_engine->rootObjects().isEmpty()
        ? qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst()) : nullptr;
}

QObject* SettingsFixture::item(const QString& objectName) const
{
    QQuickWindow* root = window();
    if (!root)
        return nullptr;
    if (QObject* found = root->findChild<QObject*>(objectName))
        return found;
    // Delegates of views are items of the scene, not children of the objects that declare them.
    std::function<QQuickItem*(QQuickItem*)> search = [&](QQuickItem* item) -> QQuickItem* {
        if (item->objectName() == objectName)
            return item;
        for (QQuickItem* child : item->childItems()) {
            if (QQuickItem* found = search(child))
                return found;
        }
        return nullptr;
    };
    return search(root->contentItem());
}

bool SettingsFixture::click(const QString& objectName) const
{
    QObject* button = item(objectName);
    if (!button || !button->property("enabled").toBool())
        return false;
    return QMetaObject::invokeMethod(button, "clicked");
}

bool SettingsFixture::saveScreenshot(const QString& name, QImage* image) const
{
    QQuickWindow* root = window();
    if (!root || !QDir().mkpath(QStringLiteral(STATION_SCREENSHOT_DIR)))
        return false;
    QSignalSpy frame(root, &QQuickWindow::frameSwapped);
    root->update();
    if (!frame.wait(10000))
        return false;
    // The offscreen platform's backing store cannot hand its image to grabWindow(); its screen
    // grab reads the same pixels.
    QImage grabbed = root->grabWindow();
    if (grabbed.isNull())
        grabbed = root->screen()->grabWindow(root->winId()).toImage();
    if (image)
        *image = grabbed;
    return !grabbed.isNull() && grabbed.save(QStringLiteral(STATION_SCREENSHOT_DIR "/%1.png").arg(name));
}

bool SettingsFixture::showPage(const QString& key) const
{
    QQuickWindow* root = window();
    const int index = root ? root->property("pageKeys").toStringList().indexOf(key) : -1;
    if (index < 0)
        return false;
    root->setProperty("currentPage", index);
    return QTest::qWaitFor([&] { return isShown(QStringLiteral("page_") + key); }, 5000);
}

bool SettingsFixture::newFolder(const QString& type) const
{
    QObject* typeBox = item(QStringLiteral("folderTypeBox"));
    int index = -1;
    if (!typeBox || !click(QStringLiteral("newFolderButton"))
        || !QMetaObject::invokeMethod(typeBox, "indexOfValue", Q_RETURN_ARG(int, index), Q_ARG(QVariant, type)) || index < 0)
        return false;
    typeBox->setProperty("currentIndex", index);
    return type != QLatin1String("samba")
        || QTest::qWaitFor([this] { return isShown(QStringLiteral("folderAddressField")); }, 5000);
}

QVariant SettingsFixture::property(const QString& objectName, const char* name) const
{
    QObject* found = item(objectName);
    return found ? found->property(name) : QVariant();
}

QString SettingsFixture::text(const QString& objectName) const
{
    return property(objectName, "text").toString();
}

bool SettingsFixture::isShown(const QString& objectName) const
{
    auto* found = qobject_cast<QQuickItem*>(item(objectName));
    return found && found->isVisible();
}

QByteArray SettingsFixture::digest(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256) : QByteArray();
}

bool SettingsFixture::selectFolder(const QString& alias)
{
    Directories* directories = DZuConfiguration::getInstance()->directories();
    bool found = false;
    const auto folder = directories->getFolderByName(alias, found);
    if (found)
        directories->selectFolder(directories->folders()->list().indexOf(folder));
    return found;
}
