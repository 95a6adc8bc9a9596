#pragma once

#include <QBrush>
#include <QWidget>

#include "cskin.h"

namespace Dravo {

// The skinned panel of a popup; reports taps so that a popup can close on them.
class CTWPopup : public QWidget
{
    Q_OBJECT
public:
    explicit CTWPopup(QWidget* parent = nullptr);

    void setBrush(const QBrush& brush);
    const QBrush& brush() const { return m_brush; }
    void setSkin(const CSkin& skin);
    const CSkin& skin() const { return m_skin; }

signals:
    void onMousePressed();
    void onMouseReleased();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QBrush m_brush;
    CSkin m_skin;
};

}  // namespace Dravo
