#include "app/gui/DRPhoneRestoreWindow.h"

#include "app/DRMigrateStartup.h"
#include "app/gui/DRPhoneFolder.h"
#include "app/gui/DRQuestionBox.h"
#include "wizard/pages/DRMGPages.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

#include <QDir>
#include <QMessageBox>

#include <utility>

using namespace Qt::StringLiterals;

DRPhoneRestoreWindow::DRPhoneRestoreWindow(DRMGRestoreSequence& restore, DRMigrateStartup& startup)
    : DRSequenceWindow(
          restore,
          {.makePage = [this](DRSequenceStep& step) { return makePage(step); },
           .text = [&restore](const QString& identifier) { return restore.context().strings.text(identifier); },
           .mayLeave = [this] { return mayLeave(); },
           .settingsPath = startup.folders().state + u"/window.ini"_s}),
      m_restore(restore),
      m_putBack(restore.putBack()),
      m_startup(startup)
{
    connect(&m_putBack, &DRMGRestoreStepPutBack::workPhaseChanged, this, &DRPhoneRestoreWindow::workPhaseChanged);
}

DRPhoneRestoreWindow::~DRPhoneRestoreWindow() = default;

QWidget* DRPhoneRestoreWindow::makePage(DRSequenceStep& step)
{
    return DRMGPages::pageFor(step, {.context = m_restore.context(), .chooseBackupsFolder = {}, .choosePhone = [this] {
                                         DRPhoneFolder::choose(*this, text(u"wizard_phone_folder_title"_s),
                                                               QDir::homePath(),
                                                               [this](const QString& folder) { usePhone(folder); });
                                     }});
}

QString DRPhoneRestoreWindow::text(const QString& identifier) const
{
    return m_restore.context().strings.text(identifier);
}

void DRPhoneRestoreWindow::usePhone(const QString& folder)
{
    static_cast<void>(DRPhoneFolder::use(*this, m_restore.context(), m_startup, folder)); // the step looks itself
}

void DRPhoneRestoreWindow::tellNoPhone(const QString& folder)
{
    DRPhoneFolder::tellNoPhone(*this, m_restore.context(), folder);
}

void DRPhoneRestoreWindow::endWhenPossible(std::function<void()> end)
{
    if (m_putBack.isWriting()) {
        m_end = std::move(end);
        return;
    }
    m_restore.abandon(); // closes the window
    end();
}

bool DRPhoneRestoreWindow::mayLeave()
{
    if (!m_putBack.isRunning() || (m_isStopWanted && !m_putBack.isWriting())) {
        return true;
    }
    if (m_closeQuestion.isNull()) {
        m_closeQuestion = askWhetherToStop();
    }
    return false;
}

QPointer<QMessageBox> DRPhoneRestoreWindow::askWhetherToStop()
{
    const DRQuestionBox::Button goOn{text(u"wizard_close_continue"_s), [] {}};
    DRQuestionBox box{.icon = QIcon(m_restore.context().resources.pathForResource(u"tarvex_alert"_s)),
                      .title = text(u"wizard_restore_writing_title"_s),
                      .text = text(u"wizard_restore_writing_text"_s),
                      .buttons = {goOn}};
    if (!m_putBack.isWriting()) {
        const auto stop = [this] {
            m_isStopWanted = true;
            close();
        };
        box.title = text(u"wizard_restore_close_title"_s);
        box.text = text(u"wizard_restore_close_text"_s);
        box.buttons = {{text(u"wizard_restore_close_stop"_s), stop}, goOn};
    }
    return box.ask(*this);
}

void DRPhoneRestoreWindow::workPhaseChanged()
{
    using Phase = DRMGRestoreStepPutBack::Phase;
    const Phase phase = m_putBack.phase();
    if (QMessageBox* const question = m_closeQuestion.data(); question != nullptr && phase != Phase::BackUp) {
        question->reject(); // what it says does not hold any more
    }
    if (m_putBack.isRunning()) {
        m_sleepInhibitor.inhibit(text(u"wizard_window_title"_s), text(u"wizard_restore_put_back_header"_s));
        return;
    }
    m_sleepInhibitor.release();
    if (const auto end = std::exchange(m_end, {})) {
        // The outcome comes first: only then everything is in its place.
        QMetaObject::invokeMethod(
            this,
            [this, end] {
                m_restore.abandon();
                end();
            },
            Qt::QueuedConnection);
    }
}
