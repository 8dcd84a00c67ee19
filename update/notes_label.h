#pragma once

#include <QLabel>

/// Shows release notes as plain text within half a second, whoever wrote them. Its width is the scroll area's, which
/// gives it the height that they need. GUI thread.
class NotesLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Shows the first 20,000 characters, of the marks on one letter the first three, and words that are wider than a
    /// line in pieces.
    void setNotes(const QString& notes);

    QSize sizeHint() const override; ///< none
    QSize minimumSizeHint() const override;
};
