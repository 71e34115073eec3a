// Chrome's file of bookmarks, edited as text: the result is JSON that holds the new bookmarks, or we say that it is not.

#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "fuzz/DRFuzzFolder.h"
#include "fuzz/DRFuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRUtf8.h"
#include "tests/support/DRTestServices.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

/// The input is the texts of two bookmarks and a folder, each with its length before it, then Chrome's file.
void fuzzOne(QByteArrayView bytes)
{
    DRTestServices test;
    DRFuzzInput input(bytes);
    const auto text = [&input] { return DRUtf8::decode(input.takeText()); };
    DRMigrateIPhoneBookmarks source(test.services);
    source.setContent({{1, {.title = text(), .url = text()}}, {2, {.title = text(), .url = text()}}},
                      {{.title = u"Root"_s, .folderId = 0, .parentFolderId = {}, .bookmarkIds = {1}},
                       {.title = text(), .folderId = 3, .parentFolderId = 0, .bookmarkIds = {2}}});

    const DRFuzzFolder folder;
    const QByteArrayView rest = input.takeRest();
    const QByteArray stretched = stretchedIfShort(rest);
    const QString path =
        folder.write(u"packet/apps/packet/r/app_chrome/Default/Bookmarks"_s, stretched.isEmpty() ? rest : stretched);
    const QByteArray before = contentOf(path);
    DRMigrateChromeBookmarks chrome(test.services);
    chrome.setTargetPath(folder.path({}));
    chrome.setPacketID(u"packet"_s);
    require(chrome.mergeDataFrom(source), "bookmarks are merged");

    const QByteArray after = contentOf(path);
    require(after.isValidUtf8(), "the file is UTF-8");
    const bool isDamaged = QJsonDocument::fromJson(after).isNull();
    const bool isLoss = !chrome.report().skipped.empty();
    require(!isDamaged || isLoss, "a file that Chrome cannot read is a loss");
    require(!isLoss || !chrome.report().warnings.isEmpty(), "and is told of before it reaches the phone");
    require(chrome.report().written == (isLoss ? 0 : 2), "both bookmarks are written, or none");
    require(isDamaged || after.count(R"("type": "url")") >= 2, "the new bookmarks are in the file");
}
