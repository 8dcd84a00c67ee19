#pragma once

#include <QImage>
#include <QString>
#include <QVector>

class QTextEdit;

/// What a page is made of, apart from the editor that shows it. Copies share the pictures, and any thread may read them.
struct PageContent
{
    QString html;             ///< its pictures are named by their index: <img src="picture:0"
    QVector<QImage> pictures; ///< a null one is left out of the page
    int caret = 0;            ///< position in the document
};

// GUI thread, all of them.

PageContent contentOf(const QTextEdit& editor);

/// Puts a page in the place of the one that the editor shows, in one undo step. Pictures that are wider than the page, and
/// colours, are treated as in text that is pasted; nothing is loaded from files or from the network.
void replacePage(QTextEdit& editor, const PageContent& content);

/// Empties the page in one undo step.
void clearPage(QTextEdit& editor);

/// Index of the picture that a name of PageContent::html stands for, or -1.
int pictureIndex(const QString& name);
