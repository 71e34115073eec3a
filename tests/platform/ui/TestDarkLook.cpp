#include "platform/sequence/DRSequenceResourceManager.h"
#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"
#include "tests/support/DRScreenshot.h"
#include "tests/support/DRTestTable.h"
#include "tests/support/DRTestTimerSource.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QHBoxLayout>
#include <QProxyStyle>
#include <QPushButton>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// The share of light that the colour gives off, from 0 for black to 1 for white, as the eye sees it.
double luminanceOf(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrastOf(const QColor& one, const QColor& other)
{
    const auto [low, high] = std::minmax({luminanceOf(one), luminanceOf(other)});
    return (high + 0.05) / (low + 0.05);
}

/// A style with animations on or off, as the desktop's settings say it.
class AnimationStyle final : public QProxyStyle {
public:
    explicit AnimationStyle(int milliseconds) : m_milliseconds(milliseconds) {}

    int styleHint(StyleHint hint, const QStyleOption*, const QWidget*, QStyleHintReturn*) const override
    {
        return hint == SH_Widget_Animation_Duration ? m_milliseconds : QProxyStyle::styleHint(hint);
    }

private:
    int m_milliseconds;
};

} // namespace

class TestDarkLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void contrastIsEnough_data()
    {
        const DRTestTable<QPalette::ColorRole, QList<QRgb>> row("front", "grounds");
        using P = DRDarkPalette;
        const QList<QRgb> everywhere = {P::kWindow, P::kSide, P::kTable, P::kTableAlternate, P::kPanel, P::kButton};
        row("text", QPalette::WindowText, everywhere);
        row("text of lists", QPalette::Text, everywhere);
        row("buttons", QPalette::ButtonText, everywhere);
        row("muted text", QPalette::PlaceholderText, everywhere);
        row("tooltips", QPalette::ToolTipText, everywhere);
        row("links", QPalette::Link, everywhere);
        row("selection", QPalette::HighlightedText, {P::kAccent});
    }

    void contrastIsEnough()
    {
        QFETCH(const QPalette::ColorRole, front);
        QFETCH(const QList<QRgb>, grounds);
        QApplication::setPalette(QPalette(Qt::white)); // what a light desktop does
        DRDarkStyle::applyToApplication();
        for (const QRgb ground : grounds) {
            const double contrast = contrastOf(QWidget().palette().color(front), QColor(ground));
            QVERIFY2(contrast >= 4.5, qPrintable(QColor(ground).name() + u": "_s + QString::number(contrast)));
        }
    }

    void buttonsStandOut_data()
    {
        const DRTestTable<QPalette, bool> row("palette", "isPressed");
        row("plain", DRDarkPalette::palette(), false);
        row("plain pressed", DRDarkPalette::palette(), true);
        row("main", DRDarkPalette::mainButtonPalette(), false);
        row("main pressed", DRDarkPalette::mainButtonPalette(), true);
    }

    void buttonsStandOut()
    {
        QFETCH(const QPalette, palette);
        QFETCH(const bool, isPressed);
        QWidget page;
        auto* const row = new QHBoxLayout(&page);
        auto* const button = new QPushButton(u"Next"_s);
        auto* const other = new QCheckBox(u"Notes"_s);
        row->addWidget(button);
        row->addWidget(other);
        page.show();
        QApplication::setActiveWindow(&page);
        QVERIFY(QTest::qWaitForWindowActive(&page));
        button->setPalette(palette);
        button->setDown(isPressed);
        button->setFocus();
        QVERIFY(saveScreenshot(page, u"buttons_"_s + QLatin1String(QTest::currentDataTag())));
        const QImage focused = button->grab().toImage();
        const int middle = focused.height() / 2;
        const QColor window(DRDarkPalette::kWindow);
        QVERIFY(contrastOf(focused.pixelColor(10, middle), palette.color(QPalette::ButtonText)) >= 4.5);
        const QColor ring = focused.pixelColor(1, middle);
        QVERIFY2(contrastOf(ring, window) >= 3, "a ring around the button that has the focus");
        other->setFocus();
        const QColor face = button->grab().toImage().pixelColor(1, middle);
        QVERIFY2(contrastOf(ring, face) >= 2, "which is seen to come and go");
    }

    void tickBoxesShowTheirState()
    {
        DRDarkStyle::applyToApplication();
        QCheckBox box(u"Notes"_s);
        QList<QImage> looks;
        for (const Qt::CheckState state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
            box.setCheckState(state);
            looks.append(box.grab().toImage());
        }
        QVERIFY(looks[0] != looks[1] && looks[1] != looks[2] && looks[0] != looks[2]);
    }

    void spinnerTurnsOnlyWhenSeenAndWanted_data()
    {
        const DRTestTable<int, bool> row("animationMilliseconds", "turns");
        row("animations on", 200, true);
        row("animations off", 0, false);
    }

    void spinnerTurnsOnlyWhenSeenAndWanted()
    {
        QFETCH(const int, animationMilliseconds);
        AnimationStyle style(animationMilliseconds);
        DRTestTimerSource timers;
        DRSpinner spinner(timers);
        spinner.setStyle(&style);
        QCOMPARE(timers.runningCount(), std::size_t{0});
        spinner.show();
        const QImage first = spinner.grab().toImage();
        timers.advance(DRSpinner::kStepInterval * (DRSpinner::kStepsPerTurn / 4));
        QTEST(spinner.grab().toImage() != first, "turns");
        timers.advance(DRSpinner::kStepInterval * (DRSpinner::kStepsPerTurn - DRSpinner::kStepsPerTurn / 4));
        QCOMPARE(spinner.grab().toImage(), first);
        spinner.hide();
        QCOMPARE(timers.runningCount(), std::size_t{0});
    }

    void iconsAreSharpAndUndistorted()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"half.svg"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10' viewBox='0 0 10 10'>"
                   "<rect width='5' height='10' fill='black'/><rect x='5' width='5' height='10' fill='lime'/></svg>");
        file.close();
        DRSequenceResourceManager resources;
        resources.registerBundle(folder.path());
        DRIconLabel label(resources);
        QVERIFY(label.setIconName(u"half"_s));
        QCOMPARE(label.sizeHint(), QSize(10, 10));
        label.resize(40, 20);
        for (const int density : {1, 2, 3}) {
            QImage image(label.size() * density, QImage::Format_RGB32);
            image.setDevicePixelRatio(density);
            image.fill(Qt::white);
            label.render(&image, {}, {}, QWidget::DrawChildren);
            QCOMPARE(image.pixelColor(20 * density - 1, 5), QColor(Qt::black));
            QCOMPARE(image.pixelColor(20 * density, 5), QColor(Qt::green));
            QCOMPARE(image.pixelColor(10 * density - 1, 5), QColor(Qt::white));
            QCOMPARE(image.pixelColor(30 * density, 5), QColor(Qt::white));
        }
        QVERIFY(!label.setIconName(u"nothing"_s));
        QVERIFY(label.sizeHint().isEmpty());
    }
};

QTEST_MAIN(TestDarkLook)
#include "TestDarkLook.moc"
