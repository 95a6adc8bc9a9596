// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clineedit.h"

#include <QKeyEvent>

namespace Dravo {

QValidator::State CLineEdit::PhoneValidator::validate(QString& input, int& pos) const
{
    if (pos <= 0)
        return Acceptable;
    if (input.length() > MAX_LENGTH)
        return Invalid;
    // A cursor past the end (a program setting it) has no typed character to judge.
    if (pos > input.length())
        return Invalid;
    if (pos == 1) {
        const QChar first = input.at(0);
        if (first == QLatin1Char('+') && input.count(QLatin1Char('+'), Qt::CaseSensitive) == 1)
            return Acceptable;
        return first.isDigit() ? Acceptable : Invalid;
    }
    return input.at(pos - 1).isDigit() ? Acceptable : Invalid;
}

QValidator::State CLineEdit::PhoneEmailValidator::validate(QString& input, int& pos) const
{
    if (pos <= 0)
        return Acceptable;
    if (pos > input.length())
        return Invalid;
    const QChar typed = input.at(pos - 1);
    if (typed.isDigit() || typed.isLetter())
        return Acceptable;
    static const QString s_strAllowed = QStringLiteral("@.-,+");
    return s_strAllowed.contains(typed) ? Acceptable : Invalid;
}

CLineEdit::CLineEdit(const QString& strContents, QWidget* parent, eLineEditType type)
    : QLineEdit(strContents, parent), m_type(type), m_pValidator(nullptr)
{
    init();
}

CLineEdit::CLineEdit(QWidget* parent, eLineEditType type)
    : QLineEdit(parent), m_type(type), m_pValidator(nullptr)
{
    init();
}

CLineEdit::~CLineEdit()
{
    // The field must not keep a pointer to the validator while it is being deleted.
    setValidator(nullptr);
    delete m_pValidator;
}

void CLineEdit::init()
{
    setAutoFillBackground(false);
    switch (m_type) {
        case eLineEditPhone:
            m_pValidator = new PhoneValidator();
            setValidator(m_pValidator);
            setInputMethodHints(Qt::ImhDialableCharactersOnly);
            break;
        case eLineEditPhoneEmail:
            m_pValidator = new PhoneEmailValidator();
            setValidator(m_pValidator);
            // Addresses and numbers: no capital at the start, no word guessing, Latin letters.
            setInputMethodHints(Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText |
                                Qt::ImhPreferLowercase | Qt::ImhLatinOnly);
            break;
        default:
            break;
    }
}

QVariant CLineEdit::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return QLineEdit::inputMethodQuery(query);
}

void CLineEdit::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    emit signalFocusGotten();
}

void CLineEdit::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    emit signalFocusLost();
}

void CLineEdit::keyPressEvent(QKeyEvent* event)
{
    if (m_type == eLineEditNavigateOnly) {
        switch (event->key()) {
            case Qt::Key_Left:
            case Qt::Key_Right:
            case Qt::Key_Home:
            case Qt::Key_End:
                break;
            default:
                return;
        }
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace Dravo
