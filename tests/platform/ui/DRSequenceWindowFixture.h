#pragma once

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRSequenceWindow.h"
#include "tests/support/DRTestAnalytics.h"

#include <QApplication>
#include <QHash>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <utility>

class NotingStep final : public DRSequenceStep {
public:
    NotingStep(const QString& key, QStringList& calls)
        : DRSequenceStep(key), title(QStringLiteral("Title of ") + key), m_calls(calls)
    {
    }

    QString localizedTitle() const override { return title; }
    void stepWillAppearInDirection(DRSequenceDirection) override
    {
        m_calls.append(key() + QStringLiteral(" willAppear"));
    }
    void stepDidAppearInDirection(DRSequenceDirection) override
    {
        m_calls.append(key() + QStringLiteral(" didAppear"));
    }
    void stepWillDisappear() override { m_calls.append(key() + QStringLiteral(" willDisappear")); }

    QString title;

private:
    QStringList& m_calls;
};

class NotingSequence final : public DRSequence {
public:
    using DRSequence::DRSequence;
    using DRSequence::setNextKeyEquivalent;

    bool hasStepGroupFailed(int identifier) const override { return identifier == failedGroup; }

    int failedGroup = -1;
};

inline const QHash<QString, QString> kTexts = {
    {QStringLiteral("dr_sequence_button_next"), QStringLiteral("&Next")},
    {QStringLiteral("dr_sequence_button_done"), QStringLiteral("&Done")},
    {QStringLiteral("dr_sequence_button_cancel"), QStringLiteral("&Cancel")},
    {QStringLiteral("back"), QStringLiteral("&Back")},
    {QStringLiteral("dr_sequence_group_done"), QStringLiteral("done")},
    {QStringLiteral("dr_sequence_group_failed"), QStringLiteral("failed")},
    {QStringLiteral("dr_sequence_group_current"), QStringLiteral("current step")},
    {QStringLiteral("dr_sequence_group_to_come"), QStringLiteral("still to come")},
};

/// A window of the steps "a" and "b" in one group and "c" in another, an empty group between, not yet started.
struct DRSequenceWindowFixture {
    explicit DRSequenceWindowFixture(const QString& settingsPath = QString(), const QString& longer = QString())
    {
        const QString titles[] = {QStringLiteral("Welcome") + longer, QStringLiteral("Nothing"),
                                  QStringLiteral("Select content") + longer};
        for (int group = 0; group < 3; ++group) {
            sequence.addStepGroupWithIdentifier(group, titles[group]);
        }
        a = add(QStringLiteral("a"), 0);
        b = add(QStringLiteral("b"), 0);
        c = add(QStringLiteral("c"), 2);
        QObject::connect(&sequence, &DRSequence::ended, &sequence, [this](DRSequence::Ending ending) {
            calls.append(ending == DRSequence::Ending::Completed ? QStringLiteral("completed")
                                                                 : QStringLiteral("cancelled"));
        });
        DRSequenceWindow::Setup setup{.settingsPath = settingsPath};
        setup.makePage = [this](DRSequenceStep& step) {
            calls.append(step.key() + QStringLiteral(" page"));
            return pages.value(step.key());
        };
        setup.text = [longer](const QString& identifier) { return kTexts.value(identifier) + longer; };
        setup.mayLeave = [this] {
            calls.append(QStringLiteral("asked"));
            return mayLeave;
        };
        window = std::make_unique<DRSequenceWindow>(sequence, setup);
    }

    NotingStep* add(const QString& key, int group)
    {
        auto step = std::make_unique<NotingStep>(key, calls);
        NotingStep* const added = step.get();
        sequence.pushStep(std::move(step), group);
        return added;
    }

    [[nodiscard]] bool open()
    {
        window->show();
        sequence.start();
        QApplication::setActiveWindow(window.get());
        return QTest::qWaitForWindowActive(window.get());
    }

    QPushButton* button(const QString& name) const { return window->findChild<QPushButton*>(name); }
    QLabel* heading() const { return window->findChild<QLabel*>(QStringLiteral("heading")); }
    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    DRTestAnalytics analytics;
    NotingSequence sequence{analytics};
    QHash<QString, QWidget*> pages; ///< by step key; the window takes them over
    bool mayLeave = true;
    NotingStep* a = nullptr;
    NotingStep* b = nullptr;
    NotingStep* c = nullptr;
    std::unique_ptr<DRSequenceWindow> window;
};
