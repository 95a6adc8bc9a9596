// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocale>
#include <QString>

namespace Dravo {

// Installs the client's translation for a locale, with Qt's own texts (dialog
// buttons, edit menus) in the same language. Must run before the first text is used.
class CTranslations
{
public:
    CTranslations() = delete;

    // Returns the language installed ("de", "fi"), or an empty string when the
    // locale has no translation and the client stays in English.
    static QString install(const QLocale& locale);

    // The languages compiled in, besides English.
    static QStringList languages();
};

}  // namespace Dravo
