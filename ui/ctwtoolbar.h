#pragma once

#include <QBoxLayout>
#include <QBrush>
#include <QWidget>

#include "cskin.h"

namespace Dravo {

// A skinned strip that holds buttons in its own box layout.
class CTWToolBar : public QWidget
{
    Q_OBJECT
public:
    explicit CTWToolBar(QBoxLayout::Direction direction = QBoxLayout::TopToBottom,
                        QWidget* parent = nullptr);

    void setDirection(QBoxLayout::Direction direction);
    // The tool bar's layout; null only if someone replaced it with another kind.
    QBoxLayout* boxLayout() const;

    void setBrush(const QBrush& brush);
    const QBrush& brush() const { return m_brush; }
    void setSkin(const CSkin& skin);
    const CSkin& skin() const { return m_skin; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QBrush m_brush;
    CSkin m_skin;
};

}  // namespace Dravo
