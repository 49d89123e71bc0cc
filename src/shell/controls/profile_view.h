#pragma once

#include "drawing/profile.h"

#include <QPixmap>
#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

namespace shell {

/// What a profile view shows: one ground line, with the row of the book that each point stands in.
struct ProfileContent {
    drawing::Figures figures = drawing::Figures::Chainage;
    QString title;                                             ///< above the plot
    std::vector<drawing::GroundPlace> ground;                  ///< in its order along the section
    std::vector<int> rows;                                     ///< one a point
    std::vector<std::vector<drawing::GroundPlace>> neighbours; ///< faint, behind it
    QString nothing;                                           ///< said where there is no ground
};

/// A plot of a section that fills its widget: the wheel zooms, dragging moves, a double click fits it again;
/// so do +, - and 0. A click, or Left and Right, chooses a point. How many times heights are exaggerated is
/// said above the plot.
class ProfileView final : public QWidget {
  public:
    explicit ProfileView(QWidget* parent = nullptr);

    std::function<void(int row)> chosen; ///< a point was clicked

    void show(ProfileContent content);
    /// The point of this row is marked; a row without one marks nothing.
    void mark(int row);
    [[nodiscard]] const ProfileContent& content() const { return m_content; }
    [[nodiscard]] double exaggeration() const;                 ///< 0 when nothing is shown
    [[nodiscard]] int markedPoint() const { return m_marked; } ///< -1: none
    [[nodiscard]] QPointF pointAt(std::size_t index) const;    ///< where it is on the widget
    void fit();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    /// What of the section is in sight. Pixels are the widget's.
    struct Sight {
        double along = 0;    ///< metres at the left edge of the plot
        double datum = 0;    ///< metres at its foot
        double perMetre = 1; ///< pixels
        double levelPerMetre = 1;
    };

    [[nodiscard]] double letterHeight() const; // of a capital, pixels
    [[nodiscard]] double figureRow() const;
    [[nodiscard]] double plotTop() const;
    [[nodiscard]] QRectF plotArea() const;
    [[nodiscard]] double perMillimetre() const; // pixels
    void redraw();
    void zoom(double times, QPointF at);
    void move(QPointF by);
    void paintPlot();
    void paintMark(QPainter& painter) const;
    void choose(int index);
    [[nodiscard]] int nearest(QPointF at) const;
    [[nodiscard]] std::pair<std::size_t, std::size_t> inSight() const; // points, with one on either side

    ProfileContent m_content;
    Sight m_sight;
    QPixmap m_plot;         // all but the mark; null when it is to be painted anew
    double m_figureRow = 4; // height of a row of figures, in heights of a letter
    bool m_fitted = true;
    int m_row = 0;
    int m_marked = -1;
    QPointF m_pressed;
    QPointF m_dragged;
    bool m_dragging = false;
};

} // namespace shell
