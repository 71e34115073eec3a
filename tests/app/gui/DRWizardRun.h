#pragma once

#include "app/DRMigrateStartup.h"
#include "app/gui/DRArtwork.h"
#include "app/gui/DRMigrateWizardWindow.h"
#include "app/sample/DRSample.h"
#include "tests/support/DRScreenshot.h"
#include "tests/support/DRTestFiles.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// A sample backup, phone and music library, and user folders of their own.
class DRWizardPlaces {
public:
    DRWizardPlaces()
    {
        for (const char* const variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
            qputenv(variable, m_folder.filePath(QLatin1String(variable)).toUtf8());
        }
        const DRSampleResult made = writeSample(m_folder.path(), 1, DRSystemClock());
        options = {.backupsFolder = m_folder.filePath(QStringLiteral("backups")),
                   .phoneFolder = made.phoneFolder,
                   .musicLibrary = made.musicLibrary};
    }

    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    /// A further backup that has nothing but a description.
    void addBackup(const QString& deviceName, const QString& version, bool isEncrypted = false) const
    {
        const QString folder = QDir(options.backupsFolder).filePath(deviceName);
        if (isEncrypted) {
            write(folder + QStringLiteral("/Manifest.plist"),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                  "<key>IsEncrypted</key><true/></dict></plist>");
        }
        const QString description =
            QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                           "<key>Device Name</key><string>%1</string><key>Product Version</key><string>%2</string>"
                           "<key>Last Backup Date</key><date>2014-05-06T00:00:00Z</date></dict></plist>")
                .arg(deviceName, version);
        write(folder + QStringLiteral("/Info.plist"), description.toUtf8());
    }

    /// Changes what the phone says of itself.
    void describePhone(const QString& key, const QJsonValue& value) const
    {
        QFile file(options.phoneFolder + QStringLiteral("/phone.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QJsonObject description = QJsonDocument::fromJson(file.readAll()).object();
        description.insert(key, value);
        write(file.fileName(), QJsonDocument(description).toJson());
    }

    static void write(const QString& path, const QByteArray& bytes) { QVERIFY(writeFile(path, bytes)); }

    DRMigrateStartupOptions options;

private:
    QTemporaryDir m_folder{QDir::temp().filePath(QStringLiteral("try-XXXXXX"))};
};

/// One of the program's windows, used as a person uses it.
class DRWindowRun {
public:
    explicit DRWindowRun(QWidget& window) : m_window(window) {}

    /// Shows it at its usual size, however small the screen, and waits until keys reach it.
    void show() const
    {
        m_window.resize(m_window.sizeHint());
        m_window.show();
        m_window.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&m_window));
    }

    [[nodiscard]] QWidget& widget() const { return m_window; }

    /// The visible widget with this object name.
    template <typename Widget = QAbstractButton> [[nodiscard]] Widget* find(const QString& name) const
    {
        for (Widget* const widget : m_window.findChildren<Widget*>(name)) {
            if (widget->isVisible()) {
                return widget;
            }
        }
        return nullptr;
    }

    void click(const QString& name) const
    {
        QAbstractButton* const button = find(name);
        QVERIFY2(button != nullptr, qPrintable(name));
        QTest::mouseClick(button, Qt::LeftButton);
    }

    /// Presses the key where the keyboard's focus is.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QWidget* const focused = m_window.focusWidget();
        QTest::keyClick(focused == nullptr ? &m_window : focused, key, modifiers);
    }

    [[nodiscard]] bool takeScreenshot(const QString& name) const
    {
        QCoreApplication::processEvents();
        return saveScreenshot(m_window, name);
    }

private:
    QWidget& m_window;
};

/// The assistant over these places, shown and at its first page.
class DRWizardRun {
public:
    explicit DRWizardRun(const DRWizardPlaces& places) : startup(places.options)
    {
        startup.openPhone();
        DRMGContext context = startup.context();
        context.ledgerPath = startup.ledgerPath();
        context.resources.registerBundle(DRArtwork::folder());
        migration = DRMGSequence::sequence(context);
        window = std::make_unique<DRMigrateWizardWindow>(*migration, startup);
        migration->start();
        seen().show();
    }

    /// The same window as a person sees it.
    [[nodiscard]] DRWindowRun seen() const { return DRWindowRun(*window); }

    [[nodiscard]] QString pageKey() const
    {
        return migration->currentStep() == nullptr ? QString() : migration->currentStep()->key();
    }

    template <typename Step> [[nodiscard]] Step& step(const QString& key) const
    {
        auto* const found = qobject_cast<Step*>(migration->stepForKey(key));
        if (found == nullptr) {
            qFatal("no step of this kind under this key");
        }
        return *found;
    }

    [[nodiscard]] DRMGSequenceStepComplete::ErrorState errorState() const
    {
        return step<DRMGSequenceStepComplete>(DRMGStepKeys::kComplete).errorState();
    }

    template <typename Widget = QAbstractButton> [[nodiscard]] Widget* find(const QString& name) const
    {
        return seen().find<Widget>(name);
    }
    void click(const QString& name) const { seen().click(name); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const { seen().press(key, modifiers); }
    [[nodiscard]] bool takeScreenshot(const QString& name) const { return seen().takeScreenshot(name); }

    DRMigrateStartup startup;
    std::unique_ptr<DRMGSequence> migration;
    std::unique_ptr<DRMigrateWizardWindow> window;
};
