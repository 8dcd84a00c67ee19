#pragma once

#include <QImage>
#include <QString>

#include <functional>

class QMimeData;
struct PictureRoom;
class QTextDocument;
class QTextDocumentFragment;

/// True when a clipboard holds a picture and no words beside it. Office programs add a picture of the selected text;
/// browsers add a line of HTML to a copied picture.
bool isPictureOnly(const QMimeData& source);

/// Rich text of a clipboard, made fit for the page:
/// - pictures that the text carries itself (data: addresses) become resources of `page`, scaled down where they are
///   wider than the sheet; others are left out: for a text from elsewhere no file is read and no computer is asked, and
///   only a broken-picture mark would print;
/// - colours are left out, since the head knows ink and paper only and light text would vanish;
/// - font sizes are given in points, so that the size steps act on them.
QTextDocumentFragment pastedText(const QString& html, QTextDocument& page, const PictureRoom& room);

/// State (-qt-user-state) of a paragraph in HTML that stands directly below a table, without an empty one in between.
constexpr int kBehindTable = 1;

/// Gives the picture that a text names, or a null one, which is left out.
using PictureSource = std::function<QImage(const QString& address)>;

/// As pastedText(), with pictures that somebody else finds.
QTextDocumentFragment adoptedText(const QString& html, const PictureSource& pictures, QTextDocument& page,
                                  const PictureRoom& room);

/// HTML of a part of a page that carries its pictures along, for other programs and for pasting it back.
QString copiedHtml(const QTextDocumentFragment& part, const QTextDocument& page);
