#include "ctwpushbutton.h"

namespace Dravo {

CTWPushButton::CTWPushButton(QWidget* parent) : QPushButton(parent) {}

CTWPushButton::CTWPushButton(const QString& strText, QWidget* parent) : QPushButton(strText, parent)
{
}

}  // namespace Dravo
