#include "app/DRInterrupt.h"
#include "app/DRMigrateStartup.h"
#include "app/gui/DRArtwork.h"
#include "app/gui/DRMigrateWizardWindow.h"
#include "app/gui/DRPhoneRestoreWindow.h"
#include "app/gui/DRWizardOptions.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRLog.h"
#include "platform/ui/DRDarkStyle.h"
#include "wizard/DRMGSequence.h"
#include "wizard/restore/DRMGRestoreSequence.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QStyle>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsageError = 2;
constexpr int kCannotWork = 1;
constexpr int kInterrupted = 130;

int print(const QString& text, std::FILE* stream, int code)
{
    static_cast<void>(std::fputs(qPrintable(text), stream));
    return code;
}

/// What these options lead to without a window, which needs no display: the exit code; none when the window is wanted.
std::optional<int> answerInTerminal(const DRWizardOptions& options)
{
    if (!options.error.isNull()) {
        return print(withoutControlCharacters(options.error) + u'\n', stderr, kUsageError);
    }
    if (!options.help.isNull()) {
        return print(options.help, stdout, 0);
    }
    return std::nullopt;
}

/// Whether help or the version is asked for; the toolkit's own options are not yet taken out of the arguments.
bool wantsTerminal(int argc, char* argv[])
{
    static constexpr std::array<std::string_view, 4> kOptions{"-h", "--help", "-v", "--version"};
    return std::any_of(argv, argv + argc, [](const char* argument) {
        return std::ranges::find(kOptions, std::string_view(argument)) != kOptions.end();
    });
}

/// Names, icon and colours; the texts of the toolkit's own dialogs in the person's language.
void dressUp(const DRMGContext& context, QTranslator& translator)
{
    context.resources.registerBundle(DRArtwork::folder());
    QGuiApplication::setApplicationDisplayName(context.strings.text(u"wizard_window_title"_s));
    QGuiApplication::setDesktopFileName(u"phone-migrate-wizard"_s);
    QGuiApplication::setWindowIcon(QIcon(context.resources.pathForResource(DRArtwork::applicationIconName())));
    if (translator.load(QLocale(), u"qtbase"_s, u"_"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&translator);
    }
    DRDarkStyle::applyToApplication();
}

/// Removes private content that this run or an earlier one has left behind.
void clearWorkingFolder(const DRMigrateStartup& startup)
{
    if (!DRMigrateUtils::clearTempFolder(startup.folders().temporary)) {
        qCWarning(lcMigrate) << "the working folder could not be emptied; it may hold private content";
    }
}

/// Says why the program cannot work now, such as that it works already.
void tellRefusal(const DRMGContext& context, const QString& why)
{
    QMessageBox box(QMessageBox::NoIcon, QGuiApplication::applicationDisplayName(),
                    context.strings.text(u"wizard_already_running"_s), QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(why);
    const int side = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    box.setIconPixmap(QIcon(context.resources.pathForResource(u"tarvex_alert"_s)).pixmap(side));
    box.exec();
}

/// Runs until the last window is closed, and leaves nothing behind.
int execute(DRMigrateStartup& startup, std::optional<DRInterrupt>& interrupt)
{
    const int code = QApplication::exec();
    interrupt.reset();           // a second request does not wait for what follows
    startup.endBackgroundWork(); // which may write there
    clearWorkingFolder(startup);
    return code;
}

/// What a request from outside to end does: the first one closes the window, once the phone is not written any more; a
/// second one does not wait for that, and leaves what is under way as it is.
void endRestore(DRPhoneRestoreWindow& window)
{
    if (window.isEnding()) {
        std::_Exit(kInterrupted);
    }
    window.endWhenPossible([] { QCoreApplication::exit(kInterrupted); });
}

/// Shows the window that puts a phone's apps back. `noPhone`: a folder that was meant to be one; may be empty.
int runRestore(DRMigrateStartup& startup,
               const DRMGContext& context,
               std::optional<DRInterrupt>& interrupt,
               const QString& noPhone)
{
    DRMGRestoreSequence restore(context, {.folder = startup.phoneBackupsFolder(), .preferred = {}});
    DRPhoneRestoreWindow window(restore, startup);
    restore.start();
    window.show();
    if (!noPhone.isEmpty()) {
        window.tellNoPhone(noPhone);
    }
    interrupt->setHandler([&window] { endRestore(window); });
    return execute(startup, interrupt);
}

/// Shows the assistant, and what it opens. `noPhone` as above.
int runWizard(DRMigrateStartup& startup,
              const DRMGContext& context,
              std::optional<DRInterrupt>& interrupt,
              const QString& noPhone)
{
    const auto migration = DRMGSequence::sequence(context);
    DRMigrateWizardWindow window(*migration, startup);
    migration->start();
    window.show();
    if (!noPhone.isEmpty()) {
        window.tellNoPhone(noPhone);
    }
    interrupt->setHandler([&] { // no question is asked
        if (DRPhoneRestoreWindow* const restore = window.restoreWindow()) {
            endRestore(*restore);
            return;
        }
        migration->abandon(); // closes the window
        QCoreApplication::exit(kInterrupted);
    });
    return execute(startup, interrupt);
}

int run(DRMigrateStartup& startup, const DRMGContext& context, bool isRestore)
{
    std::optional<DRInterrupt> interrupt(std::in_place);
    clearWorkingFolder(startup); // an earlier run may have been killed
    const QString& phone = startup.options().phoneFolder;
    const QString noPhone = phone.isEmpty() || startup.openPhone() ? QString() : phone;
    return (isRestore ? runRestore : runWizard)(startup, context, interrupt, noPhone);
}

} // namespace

int main(int argc, char* argv[])
{
    std::unique_ptr<QCoreApplication> application;
    if (wantsTerminal(argc, argv)) {
        application = std::make_unique<QCoreApplication>(argc, argv);
    } else {
        application = std::make_unique<QApplication>(argc, argv);
    }
    QCoreApplication::setApplicationName(u"phone-migrate-wizard"_s);
    const DRWizardOptions options = DRWizardOptions::parse(QCoreApplication::arguments());
    if (const auto code = answerInTerminal(options)) {
        return *code;
    }
    if (!DRLog::install(DRLog::Verbosity::Normal, options.logFile)) {
        return print(u"The log file cannot be written.\n"_s, stderr, kUsageError);
    }
    DRMigrateStartup startup(options.startup);
    DRMGContext context = startup.context();
    context.ledgerPath = startup.ledgerPath();
    QTranslator translator;
    dressUp(context, translator);
    if (const auto refusal = startup.lockWorkingFolder()) {
        tellRefusal(context, refusal->message);
        return kCannotWork;
    }
    return run(startup, context, options.isRestore);
}
