// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarvikprefill.h"

#include <QLocale>

#include "ctexts.h"

namespace Dravo {

namespace {
const QString& blank()
{
    static const QString s_blank = QStringLiteral(" ");
    return s_blank;
}

const QString& newline()
{
    static const QString s_newline = QStringLiteral("\n");
    return s_newline;
}

// "S ( number )": a screen name with the number it belongs to.
QString nameWithNumber(const QString& strName, const QString& strNumber)
{
    return strName + QStringLiteral(" ( ") + strNumber + QStringLiteral(" )");
}
}  // namespace

QString CTarvikPrefill::shownParty(const CTarvik& tarvik, bool bSent)
{
    if (bSent)
        return tarvik.to();
    if (tarvik.screenname().isEmpty())
        return tarvik.from();
    return nameWithNumber(tarvik.screenname(), tarvik.from());
}

QString CTarvikPrefill::quote(const CTarvik& tarvik, const QString& strFromLine,
                              const QString& strToLine)
{
    const QString strDate =
        QLocale::system().toString(tarvik.dateTime().toLocalTime(), QLocale::ShortFormat);
    return QStringLiteral("\n\n") + CTexts::originalMessage() + newline() + strFromLine +
           CTexts::sentLabel() + blank() + strDate + newline() + strToLine +
           CTexts::subjectLabel() + blank() + tarvik.title() + QStringLiteral("\n\n") +
           tarvik.note();
}

CTarvikPrefill CTarvikPrefill::reply(const CTarvik& tarvik, const QString& strOwnScreenName,
                                     const QString& strShown)
{
    CTarvikPrefill prefill;
    prefill.m_strTo = tarvik.from();
    prefill.m_strSubject = CTexts::replyPrefix() + blank() + tarvik.title();
    prefill.m_strNote = quote(
        tarvik, CTexts::fromLabel() + blank() + strShown + newline(),
        CTexts::toLabel() + blank() + nameWithNumber(strOwnScreenName, tarvik.to()) + newline());
    return prefill;
}

CTarvikPrefill CTarvikPrefill::forward(const CTarvik& tarvik, bool bSent,
                                       const QString& strOwnScreenName, const QString& strShown)
{
    CTarvikPrefill prefill;
    prefill.m_strSubject = CTexts::forwardPrefix() + blank() + tarvik.title();
    if (bSent) {
        prefill.m_strNote = quote(tarvik,
                                  CTexts::fromLabel() + blank() +
                                      nameWithNumber(strOwnScreenName, tarvik.from()) + newline(),
                                  CTexts::toLabel() + blank() + strShown + newline());
    } else {
        prefill.m_strNote = quote(tarvik, CTexts::fromLabel() + blank() + strShown + newline(),
                                  CTexts::toLabel() + blank() +
                                      nameWithNumber(strOwnScreenName, tarvik.to()) + newline());
    }
    return prefill;
}

}  // namespace Dravo
