#pragma once

#include <QBrush>
#include <QStackedWidget>

#include "cskin.h"

namespace Dravo {

// A skinned stacked widget used as a stack: push on top, pop and delete the top.
class CTWStackedWidget : public QStackedWidget
{
    Q_OBJECT
public:
    explicit CTWStackedWidget(QWidget* parent = nullptr);

    void push(QWidget* pWidget);
    // Removes the current widget and deletes it at once; nothing when the stack is empty.
    void pop();

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
