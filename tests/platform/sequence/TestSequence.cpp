#include "platform/sequence/DRSequence.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "tests/support/DRTestAnalytics.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Writes down what is asked of it; what it answers and does is up to the test.
class RecordingStep final : public DRSequenceStep {
public:
    RecordingStep(const QString& key, QStringList& calls) : DRSequenceStep(key), m_calls(calls) {}

    QString localizedTitle() const override { return key(); }
    QStringList analyticsPageViewComponents() const override { return {key()}; }
    void stepWillAppearInDirection(DRSequenceDirection direction) override
    {
        record(direction == DRSequenceDirection::Forward ? u"willAppearForward"_s : u"willAppearBackward"_s);
        if (onWillAppear) {
            onWillAppear();
        }
    }
    void stepDidAppearInDirection(DRSequenceDirection) override
    {
        record(sequence()->currentStep() == this ? u"didAppear"_s : u"didAppearWithoutBeingCurrent"_s);
        if (onDidAppear) {
            onDidAppear();
        }
    }
    void stepWillDisappear() override { record(u"willDisappear"_s); }
    bool sequenceShouldChangeToNextStep() override { return leavesNextToSequence; }
    bool sequenceShouldCancel() override { return leavesCancelToSequence; }

    std::function<void()> onWillAppear;
    std::function<void()> onDidAppear;
    bool leavesNextToSequence = true;
    bool leavesCancelToSequence = true;

private:
    void record(const QString& what) { m_calls.append(key() + u' ' + what); }

    QStringList& m_calls;
};

/// A sequence of "a" and "b" in group 0 and "c" in group 7, with an empty group between.
struct Fixture {
    Fixture()
    {
        sequence.addStepGroupWithIdentifier(0, u"first"_s);
        sequence.addStepGroupWithIdentifier(3, u"empty"_s);
        sequence.addStepGroupWithIdentifier(7, u"last"_s);
        a = add(u"a"_s, 0);
        c = add(u"c"_s, 7);
        b = add(u"b"_s, 0);
        QObject::connect(&sequence, &DRSequence::ended, &sequence, [this](DRSequence::Ending ending) {
            calls.append(ending == DRSequence::Ending::Completed ? u"completed"_s : u"cancelled"_s);
        });
    }

    RecordingStep* add(const QString& key, int group)
    {
        auto step = std::make_unique<RecordingStep>(key, calls);
        RecordingStep* const added = step.get();
        sequence.pushStep(std::move(step), group);
        return added;
    }

    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    DRTestAnalytics analytics;
    DRSequence sequence{analytics};
    RecordingStep* a = nullptr;
    RecordingStep* b = nullptr;
    RecordingStep* c = nullptr;
};

} // namespace

class TestSequence : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nextWalksThroughGroupsAndEndsAtTheLastStep()
    {
        Fixture f;
        f.sequence.start();
        QCOMPARE(f.takeCalls(), (QStringList{u"a willAppearForward"_s, u"a didAppear"_s}));
        f.sequence.next();
        QCOMPARE(f.takeCalls(), (QStringList{u"a willDisappear"_s, u"b willAppearForward"_s, u"b didAppear"_s}));
        f.sequence.next();
        QCOMPARE(f.sequence.currentStepGroup(), 7);
        f.calls.clear();
        f.sequence.next();
        QCOMPARE(f.takeCalls(), (QStringList{u"c willDisappear"_s, u"completed"_s}));
        QCOMPARE(f.sequence.currentStep(), nullptr);
        QCOMPARE(f.sequence.currentStepGroup(), -1);
        QCOMPARE(f.analytics.takeEvents(), (QStringList{u"page:a"_s, u"page:b"_s, u"page:c"_s}));

        f.sequence.next();
        f.sequence.cancel();
        QVERIFY2(f.takeCalls().isEmpty(), "an ended sequence takes no more orders");
    }

    void gotoStepWantsTheRightGroupAndKnowsTheDirection()
    {
        Fixture f;
        Fixture other;
        f.sequence.start();
        f.calls.clear();
        QVERIFY(!f.sequence.gotoStep(f.c, 0));
        QVERIFY(!f.sequence.gotoStep(nullptr, 0));
        QVERIFY(!f.sequence.gotoStep(other.a, 0));
        QVERIFY(f.calls.isEmpty());

        QVERIFY(f.sequence.gotoStep(f.c, 7));
        QVERIFY(f.sequence.gotoStep(f.b, 0));
        QVERIFY(f.sequence.gotoStep(f.b, 0));
        QCOMPARE(f.takeCalls().filter(u"willAppear"_s),
                 (QStringList{u"c willAppearForward"_s, u"b willAppearBackward"_s, u"b willAppearForward"_s}));
    }

    void stepsMayKeepNextAndCancelToThemselves()
    {
        Fixture f;
        f.a->leavesNextToSequence = false;
        f.a->leavesCancelToSequence = false;
        f.sequence.start();
        f.sequence.next();
        f.sequence.cancel();
        QCOMPARE(f.sequence.currentStep(), f.a);
        f.a->leavesCancelToSequence = true;
        f.calls.clear();
        f.sequence.cancel();
        QCOMPARE(f.takeCalls(), (QStringList{u"a willDisappear"_s, u"cancelled"_s}));
    }

    void buttonsObeyTheStateMask_data()
    {
        const DRTestTable<int, bool, QString> row("mask", "isNext", "lastCall");
        row("all enabled, next", 7, true, u"b didAppear"_s);
        row("all enabled, cancel", 7, false, u"cancelled"_s);
        row("next disabled, next", 5, true, u"a didAppear"_s);
        row("next disabled, cancel", 5, false, u"cancelled"_s);
        row("nothing enabled, next", 4, true, u"a didAppear"_s);
        row("nothing enabled, cancel", 4, false, u"a didAppear"_s);
        row("closing page, next", 22, true, u"completed"_s);
        row("closing page, cancel", 22, false, u"a didAppear"_s);
    }

    void buttonsObeyTheStateMask()
    {
        QFETCH(const int, mask);
        QFETCH(const bool, isNext);
        Fixture f;
        f.sequence.start();
        f.a->setStateMask(mask);
        if (isNext) {
            f.sequence.pressNext();
        } else {
            f.sequence.pressCancel();
        }
        QTEST(f.calls.last(), "lastCall");
    }

    void nextOfAStepThatIsAboutToAppearWaitsUntilItHasAppeared()
    {
        Fixture f;
        f.sequence.start();
        f.b->onWillAppear = [&f] { f.sequence.next(); };
        f.calls.clear();
        f.sequence.next();
        QCOMPARE(f.takeCalls(), (QStringList{u"a willDisappear"_s, u"b willAppearForward"_s, u"b didAppear"_s,
                                             u"b willDisappear"_s, u"c willAppearForward"_s, u"c didAppear"_s}));
    }

    void nextInsideDidAppearMovesOn()
    {
        Fixture f;
        f.b->onDidAppear = [&f] { f.sequence.next(); };
        f.sequence.start();
        f.sequence.next();
        QCOMPARE(f.sequence.currentStep(), f.c);
    }

    void uiIsUpdatedForTheCurrentStepOnly()
    {
        Fixture f;
        f.sequence.start();
        int updates = 0;
        QObject::connect(&f.sequence, &DRSequence::uiUpdated, &f.sequence, [&updates] { ++updates; });
        f.b->setStateMask(5);
        QCOMPARE(updates, 0);
        f.a->setStateMask(5);
        f.a->setStateMask(5);
        QCOMPARE(updates, 1);
    }

    void buttonLabelsOfTheStepComeFirst()
    {
        Fixture f;
        const QString cancel = u"cancel"_s;
        f.sequence.start();
        QCOMPARE(f.sequence.resolvedLocalizationKey(cancel), cancel);
        f.sequence.localizations().setAliasString(u"sequence's"_s, cancel);
        QCOMPARE(f.sequence.resolvedLocalizationKey(cancel), u"sequence's"_s);
        f.a->localizations().setAliasString(u"step's"_s, cancel);
        QCOMPARE(f.sequence.resolvedLocalizationKey(cancel), u"step's"_s);
        f.sequence.next();
        QCOMPARE(f.sequence.resolvedLocalizationKey(cancel), u"sequence's"_s);
    }

    void resourcesAreFoundInTheLastBundleFirst()
    {
        QTemporaryDir folder;
        for (const QString& path : {u"one/icon.png"_s, u"two/icon.svg"_s, u"one/only.v2.png"_s}) {
            QDir(folder.path()).mkpath(path.section(u'/', 0, 0));
            QFile file(folder.filePath(path));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        DRSequenceResourceManager resources;
        for (const QString& bundle : {u"one"_s, u"missing"_s, u"two"_s, u"one"_s}) {
            resources.registerBundle(folder.filePath(bundle));
        }
        QCOMPARE(resources.bundles().size(), 3);
        QCOMPARE(resources.pathForResource(u"icon"_s), folder.filePath(u"two/icon.svg"_s));
        QCOMPARE(resources.pathForResource(u"icon.png"_s), folder.filePath(u"one/icon.png"_s));
        QCOMPARE(resources.pathForResource(u"only.v2"_s), folder.filePath(u"one/only.v2.png"_s));
        QCOMPARE(resources.pathForResource(u"none"_s), QString());
    }
};

QTEST_GUILESS_MAIN(TestSequence)
#include "TestSequence.moc"
