#include "app/gui/DRPhoneFolder.h"

#include "app/DRMigrateStartup.h"
#include "app/gui/DRQuestionBox.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "wizard/DRMGContext.h"

#include <QDir>
#include <QFileDialog>

using namespace Qt::StringLiterals;

void DRPhoneFolder::choose(QWidget& window,
                           const QString& title,
                           const QString& start,
                           const std::function<void(const QString&)>& use)
{
    auto* const dialog = new QFileDialog(&window, title, start);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(dialog, &QFileDialog::fileSelected, &window, use);
    dialog->open();
}

bool DRPhoneFolder::use(QWidget& window, const DRMGContext& context, DRMigrateStartup& startup, const QString& folder)
{
    if (startup.changePhone(folder)) {
        return true;
    }
    tellNoPhone(window, context, folder);
    return false;
}

void DRPhoneFolder::tellNoPhone(QWidget& window, const DRMGContext& context, const QString& folder)
{
    const auto text = [&context](const QString& identifier) { return context.strings.text(identifier); };
    DRQuestionBox{.icon = QIcon(context.resources.pathForResource(u"tarvex_alert"_s)),
                  .title = text(u"wizard_window_title"_s),
                  .text = text(u"wizard_not_a_phone"_s).replace(u"%1"_s, QDir::toNativeSeparators(folder)),
                  .buttons = {{text(u"wizard_ok"_s), [] {}}}}
        .ask(window);
}
