#pragma once

#include "demo/paper_drawing.h"
#include "simulator/simulated_printer.h"

#include <QAbstractScrollArea>

/// The paper as it comes out of the printer: the printer stands below, the newest line is at its slot, and the paper
/// rises as it grows. GUI thread.
///
/// It keeps no dots: it asks for the lines on screen whenever it paints. The view stays with the newest line until
/// someone scrolls away from it, and again once they have scrolled back.
class PaperView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    static constexpr qreal kSmallestZoom = 0.25;
    static constexpr qreal kLargestZoom = 4;

    /// @param printer  has to outlive the view; may be driven from other threads meanwhile
    explicit PaperView(const SimulatedPrinter& printer, QWidget* parent = nullptr);

    void setFace(const PrinterFace& face);
    /// What stands there while there is no paper.
    void setHint(const QString& hint);

    /// Looks at how far the paper has come. A new roll is shown from its beginning.
    void refresh();
    /// Shows from now on only the lines that come after those shown.
    void tearOff();

    qint64 firstLine() const; ///< of the lines shown, by its number on the roll
    int lineCount() const;    ///< lines shown
    /// The lines shown, which may take a while for a long paper; null when there are none.
    QImage picture() const;

    /// Screen pixels a dot, device independent.
    qreal zoom() const { return m_zoom; }
    /// @param zoom  is brought into kSmallestZoom..kLargestZoom
    void setZoom(qreal zoom);
    /// The next of the usual zooms above (direction 1) or below (-1), or the largest and the smallest one.
    qreal nextZoom(int direction) const;
    /// Keeps the paper as wide as the view, within the bounds of zooms, until another zoom is chosen.
    void setFitToWidth(bool fit);
    bool fitsToWidth() const { return m_fit; }

    bool followsNewest() const;
    /// Where the dots are, in the viewport's coordinates, including what is scrolled out of sight.
    QRect dotArea() const;

signals:
    void zoomChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QSize dotSize() const;
    QSize contentSize() const;
    QPoint contentOrigin() const;
    qreal fittingZoom() const;
    void layOut(bool toNewest);
    void fitOrLayOut(bool toNewest);
    void changeZoom(qreal zoom, bool toNewest);
    /// Zooms so that the dot at `anchor` stays there, or else that the newest line is in view.
    void zoomAt(qreal zoom, const QPoint& anchor, bool toNewest);
    void drawDots(QPainter& painter, const QRect& visible) const;
    void drawHint(QPainter& painter) const;

    const SimulatedPrinter& m_printer;
    PaperLook m_paper; ///< of the last refresh(), without a picture
    qint64 m_tornAt = 0;
    PrinterFace m_face;
    QString m_hint;
    qreal m_zoom = 1;
    bool m_fit = false;
    int m_wheelTurn = 0;
};
