#include "content/page/page_content.h"
#include "content/page/page_editor.h"
#include "content/page/page_file.h"
#include "tests/files.h"

#include <QTemporaryDir>

#include <cstdlib>

// Any file opens or is refused; a page that opened is written, and comes back with its words and its pictures. Drafts are
// page files of the client's own.

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void openAndWriteBack(const QString& file, const QString& copy, PageOrigin origin)
{
    PageContent page;
    if (readPage(file, origin, &page) != PageFault::None)
        return;
    PageEditor editor;
    replacePage(editor, page);
    const PageContent shown = contentOf(editor);
    require(PageWriter().write(shown, copy).isEmpty());
    PageContent back;
    require(readPage(copy, PageOrigin::Client, &back) == PageFault::None);
    require(back.pictures.size() == shown.pictures.size());
    const QString words = editor.toPlainText().simplified(); // Qt loses an empty line here and there
    replacePage(editor, back);
    require(editor.toPlainText().simplified() == words);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("page")), copy = folder.filePath(QStringLiteral("copy"));
    require(writeFile(file, {reinterpret_cast<const char*>(bytes), static_cast<int>(size)}));
    openAndWriteBack(file, copy, PageOrigin::Client);
    openAndWriteBack(file, copy, PageOrigin::Anybody);
    return 0;
}
