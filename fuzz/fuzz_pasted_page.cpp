#include "content/page/page_editor.h"
#include "content/page/pasted_page.h"
#include "content/page/sheet_pictures.h"

#include <QTextDocumentFragment>

// Any HTML can be pasted, copied out of the page, and pasted a second time.

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    PageEditor editor;
    QTextDocument& page = *editor.document();
    QString html = QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    for (int time = 0; time < 2; ++time) {
        editor.textCursor().insertFragment(pastedText(html, page, PictureRoom::of(editor)));
        html = copiedHtml(QTextDocumentFragment(&page), page);
    }
    editor.grab();
    return 0;
}
