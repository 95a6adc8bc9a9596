// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Both input validators of the address fields on any text and any cursor position, as a
// paste, an input method or a program driving the field can hand them.
#include "clineedit.h"
#include "fuzzinput.h"

using namespace Dravo;
using namespace Dravo::Fuzz;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    CFuzzInput in(pData, iSize);
    const int iPos = in.take<int16_t>();
    const QByteArray bytes = in.rest();
    const QString input(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);

    static CLineEdit::PhoneValidator s_phone;
    static CLineEdit::PhoneEmailValidator s_phoneEmail;
    const QValidator* validators[] = {&s_phone, &s_phoneEmail};
    for (const QValidator* pValidator : validators) {
        QString text = input;
        int pos = iPos;
        const QValidator::State state = pValidator->validate(text, pos);
        // A validator judges; it never edits the text or moves the cursor.
        FUZZ_CHECK(text == input && pos == iPos);
        FUZZ_CHECK(state == QValidator::Acceptable || state == QValidator::Invalid);
        if (state == QValidator::Acceptable && pos > 0) {
            // The character just typed is one the field allows.
            FUZZ_CHECK(pos <= text.length());
            const QChar typed = text.at(pos - 1);
            if (pValidator == &s_phone) {
                FUZZ_CHECK(text.length() <= CLineEdit::PhoneValidator::MAX_LENGTH);
                FUZZ_CHECK(typed.isDigit() || (pos == 1 && typed == QLatin1Char('+')));
            } else {
                FUZZ_CHECK(typed.isLetterOrNumber() || QStringLiteral("@.-,+").contains(typed));
            }
        }
    }
    return 0;
}
