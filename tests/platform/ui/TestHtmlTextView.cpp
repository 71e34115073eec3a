#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRHtmlLinks.h"
#include "platform/ui/DRHtmlTextView.h"
#include "tests/support/DRScreenshot.h"
#include "tests/support/DRTestTable.h"

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A field, a text with two links, a text without links and another field, one below the other; notes what happens.
class Page final : public QWidget {
public:
    explicit Page(const QString& html = u"Have a <a href='1'>fresh backup</a> and a <a href='help/Phone'>phone</a>."_s)
    {
        QWidget* const widgets[] = {before, links, plain, after};
        for (QWidget* widget : widgets) {
            column->addWidget(widget);
        }
        links->setHtml(html);
        plain->setHtml(u"No link here."_s);
        for (DRHtmlTextView* view : {links, plain}) {
            view->setBlockSelection(true);
        }
        const auto note = [this](const QString& what) {
            return [this, what](const QString& name) { notes += what + name; };
        };
        connect(links, &DRHtmlTextView::clickedOnLink, this, note(u"click "_s));
        connect(links, &DRHtmlTextView::shouldDisplayCustomTooltip, this, note(u"show "_s));
        connect(links, &DRHtmlTextView::shouldHideCustomTooltip, this, note(u"hide "_s));
        show();
        QApplication::setActiveWindow(this);
        before->setFocus();
    }

    /// A place on the words within the text with links.
    QPoint placeOf(const QString& words) const
    {
        QTextCursor cursor = links->document()->find(words);
        cursor.setPosition(cursor.selectionStart() + 1);
        return links->cursorRect(cursor).center();
    }

    void restPointerOn(const QString& words)
    {
        QHelpEvent help(QEvent::ToolTip, placeOf(words), links->viewport()->mapToGlobal(placeOf(words)));
        QApplication::sendEvent(links->viewport(), &help);
    }

    void movePointerTo(const QString& words)
    {
        const QPoint place = placeOf(words);
        QMouseEvent move(QEvent::MouseMove, place, links->viewport()->mapToGlobal(place), Qt::NoButton, {}, {});
        QApplication::sendEvent(links->viewport(), &move);
    }

    /// What happened since the last call.
    QString takeNotes() { return std::exchange(notes, {}).join(u", "_s); }

    QStringList notes;
    QLineEdit* before = new QLineEdit(this);
    DRHtmlTextView* links = new DRHtmlTextView(this);
    DRHtmlTextView* plain = new DRHtmlTextView(this);
    QLineEdit* after = new QLineEdit(this);
    QVBoxLayout* column = new QVBoxLayout(this);

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        notes += event->key() == Qt::Key_Escape ? QStringList{u"page escape"_s} : QStringList();
    }
};

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

} // namespace

class TestHtmlTextView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }

    void linksAreNamedByTheirLastComponent_data()
    {
        const DRTestTable<QString, QString> row("address", "name");
        row("path", u"a/b/Backup"_s, u"Backup"_s);
        row("trailing slash", u"http://host/support/"_s, u"support"_s);
        row("query and fragment", u"http://host/a/b?c=d/e#f/g"_s, u"b"_s);
        row("host only", u"http://host"_s, {});
    }

    void linksAreNamedByTheirLastComponent()
    {
        QFETCH(const QString, address);
        QTEST(DRHtmlLinks::nameOf(QUrl(address)), "name");
    }

    void linkMarksAreDropped_data()
    {
        const DRTestTable<QString, QString> row("html", "text");
        row("marks in a link", u"See <a href = 'backup'><link>the help</link></a>."_s, u"See the help."_s);
        row("upper case, blanks", u"<LINK >Too</LINK > old"_s, u"Too old"_s);
        row("other words", u"a <b>linked</b> &lt;link&gt;"_s, u"a linked <link>"_s);
    }

    void linkMarksAreDropped()
    {
        QFETCH(const QString, html);
        DRHtmlTextView view;
        view.setHtml(html);
        QTEST(view.toPlainText(), "text");
        QTEST(view.accessibleName(), "text");
    }

    void tabWalksOverLinksAndReturnActivatesThem()
    {
        Page page;
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
        QVERIFY(saveScreenshot(page, u"html_focus"_s));
        QCOMPARE(page.links->accessibleDescription(), u"fresh backup"_s);
        press(Qt::Key_Tab);
        press(Qt::Key_Enter);
        QCOMPARE(page.takeNotes(), u"click 1, click Phone"_s);
        press(Qt::Key_Tab);
        QVERIFY2(page.after->hasFocus(), "a text without links is passed over");
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        press(Qt::Key_Return);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        press(Qt::Key_Return);
        QCOMPARE(page.takeNotes(), u"click Phone, click 1"_s);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(page.before->hasFocus());
    }

    void linkAtTheStartLetsGoOfTheFocus()
    {
        Page page(u"<a href='1'>A backup</a>"_s);
        for (int times = 0; times < 2; ++times) {
            press(Qt::Key_Tab);
            press(Qt::Key_Return);
            QCOMPARE(page.takeNotes(), u"click 1"_s);
            press(Qt::Key_Backtab, Qt::ShiftModifier);
            QVERIFY(page.before->hasFocus());
        }
    }

    void tooltipsFollowTheKeyboard()
    {
        Page page;
        press(Qt::Key_Tab);
        QVERIFY2(page.notes.isEmpty(), "links have no tooltips until the view is told so");
        page.before->setFocus();
        page.links->setCustomTooltips(true);
        press(Qt::Key_Tab);
        page.movePointerTo(u"and"_s);
        QVERIFY2(page.takeNotes() == u"show 1"_s, "the pointer closes nothing that the keyboard has opened");
        press(Qt::Key_Tab);
        QCOMPARE(page.takeNotes(), u"hide 1, show Phone"_s);
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
        QCOMPARE(page.takeNotes(), u"hide Phone, page escape"_s);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(page.takeNotes(), u"show 1, hide 1"_s);
    }

    void tooltipsFollowThePointer()
    {
        Page page;
        page.links->setCustomTooltips(true);
        page.restPointerOn(u"and"_s);
        page.restPointerOn(u"phone"_s);
        page.restPointerOn(u"hone"_s);
        QCOMPARE(page.takeNotes(), u"show Phone"_s);
        page.restPointerOn(u"backup"_s);
        page.movePointerTo(u"fresh"_s);
        QCOMPARE(page.takeNotes(), u"hide Phone, show 1"_s);
        page.movePointerTo(u"and"_s);
        QCOMPARE(page.takeNotes(), u"hide 1"_s);

        page.restPointerOn(u"phone"_s);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(page.links->viewport(), &leave);
        QCOMPARE(page.takeNotes(), u"show Phone, hide Phone"_s);
        page.restPointerOn(u"phone"_s);
        page.links->hide();
        QCOMPARE(page.takeNotes(), u"show Phone, hide Phone"_s);
        page.links->show();
        page.restPointerOn(u"phone"_s);
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
        QCOMPARE(page.takeNotes(), u"show Phone, hide Phone, page escape"_s);
    }

    void heightFitsTheText_data()
    {
        const DRTestTable<int, int, int> row("points", "width", "length"); // length: in percent
        row("usual", 10, 420, 100);
        row("long", 10, 420, 140);
        row("large, narrow", 14, 230, 100);
        row("large, narrow, long", 14, 230, 140);
    }

    void heightFitsTheText()
    {
        QFETCH(const int, points);
        QFETCH(const int, width);
        QFETCH(const int, length);
        Page page(
            u"<p style='margin-left:10px;text-indent:-10px'><b>1. Have</b><br />%1<br /><a href='1'>How</a></p>"_s.arg(
                u"words "_s.repeated(length / 4)));
        QFont font = page.font();
        font.setPointSize(points);
        page.setFont(font);
        page.column->addStretch(1);
        page.links->removePadding();
        page.resize(width, 1500);
        QCoreApplication::processEvents();
        const double needed = page.links->document()->size().height();
        QVERIFY2(page.links->viewport()->height() >= needed, "nothing is cut");
        QVERIFY2(page.links->viewport()->height() < needed + 2, "nothing is wasted");
    }

    void foreignHtmlReachesNothing_data()
    {
        const DRTestTable<QString> row("html"); // html: %1 is the address of a red picture that exists
        row("picture", u"x<img src='%1'>"_s);
        row("background", u"<body background='%1'>x</body>"_s);
        row("style", u"<style>@import url('%1');</style><p style='background-image:url(%1)'>x"_s);
        row("link", u"<a href='%1'>xxxxxx</a>"_s);
    }

    void foreignHtmlReachesNothing()
    {
        QFETCH(const QString, html);
        const QTemporaryDir folder;
        QImage red(60, 60, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(folder.filePath(u"red.png"_s)));
        Page page(html.arg(QUrl::fromLocalFile(folder.filePath(u"red.png"_s)).toString()));
        QTest::mouseClick(page.links->viewport(), Qt::LeftButton, {}, page.placeOf(u"x"_s));
        QVERIFY2(page.links->source().isEmpty(), "the view shows what it was given");
        QVERIFY(page.links->heightForWidth(400) < red.height());
        const QImage shown = page.grab().toImage();
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                QVERIFY(shown.pixelColor(x, y) != QColor(Qt::red));
            }
        }
    }
};

QTEST_MAIN(TestHtmlTextView)
#include "TestHtmlTextView.moc"
