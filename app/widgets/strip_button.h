#pragma once

#include <QPixmap>
#include <QPushButton>

/// A button whose look is a strip of pictures, one as large as the button for each state, side by side: normal,
/// hover, pressed and, where the strip is long enough, disabled; else a disabled button shows the normal one pale.
///
/// The form's style sheet cuts the strip for ordinary screens. On dense ones Qt would by itself take the file
/// "<name>@2x.png" beside it and cut that at the same numbers of smaller pixels, so there the button paints itself. It
/// does so too where it is pale.
class StripButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QString strip READ strip WRITE setStrip)

public:
    explicit StripButton(QWidget* parent = nullptr);

    QString strip() const { return m_strip; }
    /// @param file  the strip for ordinary screens, "….png"
    void setStrip(const QString& file);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int state() const;
    bool isPale() const;

    QString m_strip;
    QPixmap m_dense; ///< null when there is no such file
};
