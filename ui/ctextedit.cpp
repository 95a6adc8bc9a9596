// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctextedit.h"

#include "ctouchscroller.h"

namespace Dravo {

CTextEdit::CTextEdit(const QString& strText, QWidget* parent) : QTextEdit(strText, parent)
{
    setAutoFillBackground(false);
    CTouchScroller::enable(this);
}

CTextEdit::CTextEdit(QWidget* parent) : QTextEdit(parent)
{
    setAutoFillBackground(false);
    CTouchScroller::enable(this);
}

void CTextEdit::focusInEvent(QFocusEvent* event)
{
    QTextEdit::focusInEvent(event);
    emit signalFocusGotten();
}

void CTextEdit::focusOutEvent(QFocusEvent* event)
{
    QTextEdit::focusOutEvent(event);
    emit signalFocusLost();
}

}  // namespace Dravo
