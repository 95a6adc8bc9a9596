// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLineEdit>
#include <QValidator>

namespace Dravo {

// A single-line field whose input rules are fixed at construction. Reports focus changes.
class CLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    enum eLineEditType : int
    {
        eLineEditPhone = 0,         // digits, optionally one leading "+", at most 15 characters
        eLineEditNavigateOnly = 1,  // readable and scrollable, not editable by keys
        eLineEditPhoneEmail = 2,    // characters of a phone number or an e-mail address
        eLineEditPlain = 3          // no restriction
    };

    // Judges only the character just typed (before the cursor) and the length.
    class PhoneValidator : public QValidator
    {
    public:
        explicit PhoneValidator(QObject* parent = nullptr) : QValidator(parent) {}
        State validate(QString& input, int& pos) const override;
        static const int MAX_LENGTH = 15;
    };

    // Judges only the character just typed (before the cursor); no length limit.
    class PhoneEmailValidator : public QValidator
    {
    public:
        explicit PhoneEmailValidator(QObject* parent = nullptr) : QValidator(parent) {}
        State validate(QString& input, int& pos) const override;
    };

    CLineEdit(const QString& strContents, QWidget* parent, eLineEditType type);
    CLineEdit(QWidget* parent, eLineEditType type);
    ~CLineEdit() override;

    eLineEditType type() const { return m_type; }

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

signals:
    void signalFocusGotten();
    void signalFocusLost();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void init();

    eLineEditType m_type;
    QValidator* m_pValidator;
};

}  // namespace Dravo
