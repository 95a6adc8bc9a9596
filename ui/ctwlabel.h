#pragma once

#include <QBrush>
#include <QLabel>

#include "canimation.h"
#include "cskin.h"

namespace Dravo {

// A label over a skin or brush background, with an optional busy indicator drawn above the text.
class CTWLabel : public QLabel
{
    Q_OBJECT
public:
    explicit CTWLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    explicit CTWLabel(const QString& strText, QWidget* parent = nullptr,
                      Qt::WindowFlags flags = Qt::WindowFlags());

    void setBrush(const QBrush& brush);
    const QBrush& brush() const { return m_brush; }
    void setSkin(const CSkin& skin);
    const CSkin& skin() const { return m_skin; }

    void setBusy(bool bBusy);
    bool isBusy() const { return m_bBusy; }
    CAnimation* animation() { return &m_animation; }

public slots:
    void onAnimationFrameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void init();

    bool m_bBusy;
    CAnimation m_animation;
    QBrush m_brush;
    CSkin m_skin;
};

}  // namespace Dravo
