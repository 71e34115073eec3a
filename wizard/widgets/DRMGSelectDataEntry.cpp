#include "wizard/widgets/DRMGSelectDataEntry.h"

#include "platform/sequence/DRSequenceResourceManager.h"
#include "platform/ui/DRSpinner.h"
#include "wizard/widgets/DRMGSelectDataText.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr int kPadding = 6;
constexpr int kGap = 10;
constexpr int kCheckboxSide = 20;
constexpr int kIconSide = 24;
constexpr int kMarkSide = 20;
constexpr qreal kCornerRadius = 6;
constexpr qreal kFocusRingWidth = 2;
constexpr int kTextStart = kPadding + kCheckboxSide + kGap + kIconSide + kGap;

constexpr int kTextFlags = Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;

/// The images of the tick, by their place in the widget's array.
constexpr std::array<QStringView, 3> kCheckboxImageNames{u"checkbox-passive", u"checkbox-active", u"checkbox-mixed"};

enum CheckboxImage : std::size_t { Passive, Active, Mixed };

CheckboxImage checkboxImageFor(qint64 state)
{
    if (state == DRMGSelectDataEntry::kStateTicked) {
        return Active;
    }
    return state == DRMGSelectDataEntry::kStateMixed ? Mixed : Passive;
}

QIcon iconNamed(const DRSequenceResourceManager& resources, QStringView name)
{
    return QIcon(resources.pathForResource(name.toString()));
}

QRect centredSquare(int left, int side, int height)
{
    return {left, (height - side) / 2, side, side};
}

} // namespace

DRMGSelectDataEntry::DRMGSelectDataEntry(const DRSequenceResourceManager& resources,
                                         DRTimerSource& timers,
                                         QWidget* parent)
    : QAbstractButton(parent),
      m_unreadableMark(iconNamed(resources, u"migrate_mark_unreadable")),
      m_missingMark(iconNamed(resources, u"migrate_mark_missing")),
      m_spinner(new DRSpinner(timers, this))
{
    std::ranges::transform(kCheckboxImageNames, m_checkboxImages.begin(),
                           [&](QStringView name) { return iconNamed(resources, name); });
    setCheckable(true);
    setChecked(true);
    setAttribute(Qt::WA_Hover);
    setIconSize({kIconSide, kIconSide});
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum, QSizePolicy::CheckBox);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    m_spinner->hide();
}

void DRMGSelectDataEntry::setStringValue(const QString& stringValue)
{
    m_stringValue = stringValue;
    updateWithState();
}

void DRMGSelectDataEntry::setDataCounter(quint64 dataCounter)
{
    m_dataCounter = dataCounter;
    updateWithState();
}

void DRMGSelectDataEntry::setState(qint64 state)
{
    m_state = state;
    setChecked(state == kStateTicked);
    updateWithState();
}

void DRMGSelectDataEntry::setSizeBytes(quint64 sizeBytes)
{
    m_sizeBytes = sizeBytes;
    updateWithState();
}

void DRMGSelectDataEntry::setShowSize(bool showSize)
{
    m_showSize = showSize;
    updateWithState();
}

void DRMGSelectDataEntry::setContent(Content content, const QString& explanation)
{
    m_content = content;
    m_explanation = explanation;
    setToolTip(explanation);
    m_spinner->setVisible(content == Content::Loading);
    updateWithState();
}

QString DRMGSelectDataEntry::checkboxImageName() const
{
    return kCheckboxImageNames.at(isDown() ? Mixed : checkboxImageFor(m_state)).toString();
}

QSize DRMGSelectDataEntry::sizeHint() const
{
    const int width = kTextStart + textSize(QWIDGETSIZE_MAX).width() + spaceBehindText();
    return {width, heightForWidth(width)};
}

QSize DRMGSelectDataEntry::minimumSizeHint() const
{
    const int widestWord = textSize(1).width();
    return {kTextStart + widestWord + spaceBehindText(), kIconSide + 2 * kPadding};
}

int DRMGSelectDataEntry::heightForWidth(int width) const
{
    return std::max(kIconSide, textSize(width - kTextStart - spaceBehindText()).height()) + 2 * kPadding;
}

void DRMGSelectDataEntry::nextCheckState()
{
    setState(m_state == kStateTicked ? kStateClear : kStateTicked);
    Q_EMIT selectDataEntrySelectionDidChange();
}

/// Someone else toggles the box as a plain button, such as a screen reader.
void DRMGSelectDataEntry::checkStateSet()
{
    if (isChecked() != (m_state == kStateTicked)) {
        setState(isChecked() ? kStateTicked : kStateClear);
        Q_EMIT selectDataEntrySelectionDidChange();
    }
}

void DRMGSelectDataEntry::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Places place = places();
    const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
    if (underMouse() && isEnabled()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::AlternateBase));
        painter.drawRoundedRect(rect(), kCornerRadius, kCornerRadius);
    }
    checkboxIcon().paint(&painter, place.checkbox, Qt::AlignCenter, mode);
    icon().paint(&painter, place.icon, Qt::AlignCenter, mode);
    const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft);
    style()->drawItemText(&painter, place.text, kTextFlags | static_cast<int>(side), palette(), isEnabled(), text(),
                          QPalette::WindowText);
    markIcon().paint(&painter, place.mark);
    if (hasFocus()) {
        const qreal inset = kFocusRingWidth / 2;
        painter.setPen(QPen(palette().color(QPalette::Link), kFocusRingWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kCornerRadius, kCornerRadius);
    }
}

void DRMGSelectDataEntry::resizeEvent(QResizeEvent* event)
{
    QAbstractButton::resizeEvent(event);
    placeSpinner();
}

void DRMGSelectDataEntry::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange) {
        placeSpinner();
        updateGeometry();
    }
}

DRMGSelectDataEntry::Places DRMGSelectDataEntry::places() const
{
    const int available = std::max(0, width() - kTextStart - spaceBehindText());
    const int markLeft = kTextStart + std::min(available, textSize(available).width()) + kGap;
    const auto visual = [this](const QRect& logical) { return QStyle::visualRect(layoutDirection(), rect(), logical); };
    return {.checkbox = visual(centredSquare(kPadding, kCheckboxSide, height())),
            .icon = visual(centredSquare(kPadding + kCheckboxSide + kGap, kIconSide, height())),
            .text = visual({kTextStart, 0, available, height()}),
            .mark = visual(centredSquare(markLeft, kMarkSide, height()))};
}

/// What the text takes at most at this width; a word that is wider is not broken.
QSize DRMGSelectDataEntry::textSize(int width) const
{
    const QRect available(0, 0, std::max(1, width), QWIDGETSIZE_MAX);
    return fontMetrics().boundingRect(available, kTextFlags, text()).size();
}

int DRMGSelectDataEntry::spaceBehindText() const
{
    return m_content == Content::Ready ? kPadding : kGap + kMarkSide + kPadding;
}

QIcon DRMGSelectDataEntry::checkboxIcon() const
{
    return m_checkboxImages.at(isDown() ? Mixed : checkboxImageFor(m_state));
}

QIcon DRMGSelectDataEntry::markIcon() const
{
    if (m_content == Content::Unreadable) {
        return m_unreadableMark;
    }
    return m_content == Content::Missing ? m_missingMark : QIcon();
}

void DRMGSelectDataEntry::updateWithState()
{
    const bool isPartly = m_content == Content::Unreadable && m_dataCounter > 0;
    const bool isCounted = m_content == Content::Ready || m_content == Content::Missing || isPartly;
    const QString label = selectDataText({.stringValue = m_stringValue,
                                          .dataCounter = isCounted ? std::optional(m_dataCounter) : std::nullopt,
                                          .sizeBytes = m_showSize ? std::optional(m_sizeBytes) : std::nullopt,
                                          .unknownCount = m_content == Content::Loading ? u"…"_s : u"–"_s});
    const bool isExplained = m_content != Content::Ready && m_content != Content::Loading && !m_explanation.isEmpty();
    setText(isExplained ? label + u'\n' + m_explanation : label);
    placeSpinner();
    updateGeometry();
    update();
}

void DRMGSelectDataEntry::placeSpinner()
{
    m_spinner->setGeometry(places().mark);
}
