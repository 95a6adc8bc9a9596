#pragma once

#include <QBrush>
#include <QWidget>

#include "canimation.h"
#include "cskin.h"

namespace Dravo {

// A plain widget painted with a skin (or a brush when the skin cannot be made), with an
// optional busy indicator centred over it.
class CTWWidget : public QWidget
{
    Q_OBJECT
public:
    explicit CTWWidget(QWidget* parent = nullptr);

    void setBrush(const QBrush& brush);
    const QBrush& brush() const { return m_brush; }
    void setSkin(const CSkin& skin);
    const CSkin& skin() const { return m_skin; }

    void setBusy(bool bBusy);
    bool isBusy() const { return m_bBusy; }
    // The busy indicator; a form may load another strip into it.
    CAnimation* animation() { return &m_animation; }

public slots:
    void onAnimationFrameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QBrush m_brush;
    CSkin m_skin;
    bool m_bBusy;
    CAnimation m_animation;
};

}  // namespace Dravo
