#include "tests/wizard/widgets/DRWidgetFixture.h"
#include "wizard/widgets/DRMigrateTransmisionAnimation.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestTransmisionAnimation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// The strip of the artwork: two phones alike in every frame, dots between them that differ.
    void framesFollowEachOther()
    {
        DRWidgetFixture fixture;
        DRMigrateTransmisionAnimation view(fixture.timers);
        QVERIFY(view.setImage(fixture.resources.pathForResource(u"migrate_transmission_animation"_s)));
        view.setStyle(&fixture.animated);
        view.resize(view.sizeHint());
        view.startAnimating();
        view.startAnimating();
        QCOMPARE(fixture.timers.runningCount(), std::size_t{1});
        const QImage first = DRWidgetFixture::pictureOf(view, 2);
        const QRect leftPhone(0, 0, 60, first.height());
        for (int frame = 1; frame < 12; ++frame) {
            fixture.timers.advance(100ms);
            QCOMPARE(view.offset(), 110.0 * frame);
            QCOMPARE(DRWidgetFixture::pictureOf(view, 2).copy(leftPhone), first.copy(leftPhone));
            QVERIFY(DRWidgetFixture::pictureOf(view, 2) != first);
        }
        fixture.timers.advance(100ms);
        QCOMPARE(DRWidgetFixture::pictureOf(view, 2), first);
        QCOMPARE(DRMigrateTransmisionAnimation::offsetBehind(0, 220), 110.0);
        QCOMPARE(DRMigrateTransmisionAnimation::offsetBehind(0, 219), 0.0);
    }

    void standsStillWithoutAnimations()
    {
        DRWidgetFixture fixture;
        DRMigrateTransmisionAnimation view(fixture.timers);
        view.setStyle(&fixture.still);
        view.startAnimating();
        QCOMPARE(fixture.timers.runningCount(), std::size_t{0});
    }
};

QTEST_MAIN(TestTransmisionAnimation)

#include "TestTransmisionAnimation.moc"
