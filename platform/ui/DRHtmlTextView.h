#pragma once

#include <QTextBrowser>

/// A piece of HTML within a page: as high as its text at the width that it is given, with links that the mouse, Tab and
/// Return reach. It reads no file and no network, whatever the HTML asks for, and opens no link itself: it reports them
/// by name, which is the last component of a link's address; names do not distinguish upper and lower case.
class DRHtmlTextView : public QTextBrowser {
    Q_OBJECT

public:
    explicit DRHtmlTextView(QWidget* parent = nullptr);
    ~DRHtmlTextView() override;

    /// Shows the HTML. The marks `<link>` and `</link>` around words are dropped, the words stay.
    void setHtml(const QString& html);

    /// Whether the text cannot be selected; links still work. It can at first.
    void setBlockSelection(bool isBlocked);

    /// Puts the text at the very edge of the view.
    void removePadding();

    /// Whether links have tooltips that somebody else shows, by the two signals below. They have none at first.
    void setCustomTooltips(bool hasTooltips) { m_hasCustomTooltips = hasTooltips; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

    /// Answers an empty picture or text, whatever is asked for.
    QVariant loadResource(int type, const QUrl& name) override;

Q_SIGNALS:
    void clickedOnLink(const QString& linkName);

    /// The pointer rests on the link, or the keyboard's focus has come to it: a tooltip may open at the place.
    void shouldDisplayCustomTooltip(const QString& linkName, const QPoint& globalPosition);

    /// The pointer or the focus has left the link, Escape was pressed, or the view is hidden.
    void shouldHideCustomTooltip(const QString& linkName);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateLook();
    void updateFocusPolicy();
    void linkFocusChanged();
    [[nodiscard]] bool leavesByStart(bool isNext);
    void scrollToFocusedLink();
    void hideTooltipUnlessAt(const QString& linkName);
    [[nodiscard]] QString focusedLinkName() const; ///< empty when the keyboard's focus is on no link
    [[nodiscard]] QTextCursor selectionEnd() const;
    void showTooltip(const QString& linkName, const QPoint& globalPosition);
    void hideTooltip();
    [[nodiscard]] QString linkNameAt(const QPoint& position) const; ///< empty where no link is

    bool m_isSelectionBlocked = false;
    bool m_hasCustomTooltips = false;
    QString m_shownTooltip; ///< the link's name; empty while none is shown
    QString m_html;
};
