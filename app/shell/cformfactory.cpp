// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cformfactory.h"

#include "cplaceholderform.h"
#include "ctexts.h"

namespace Dravo {

namespace {

struct Creators
{
    CFormFactory::FolderCreator inbox;
    CFormFactory::FolderCreator outbox;
    CFormFactory::FolderCreator sent;
    CFormFactory::ComposeCreator compose;
    CFormFactory::RegisterCreator reg;
    CFormFactory::TarvikCreator view;
    CFormFactory::TarvikCreator map;
    CFormFactory::PopupCreator sendReceive;
};

Creators& creators()
{
    static Creators s_creators;
    return s_creators;
}

// Placeholders until the real screens are built into the client.
CForm* placeholderFolder(QWidget* pParent, const QString& strTitle)
{
    qDebug("%s", qPrintable(QStringLiteral("CFormFactory: placeholder for ") + strTitle));
    return new CPlaceholderForm(pParent, strTitle, CTexts::noTarviks());
}

}  // namespace

CForm* CFormFactory::createInboxForm(QWidget* pParent)
{
    if (creators().inbox)
        return creators().inbox(pParent);
    return placeholderFolder(pParent, CTexts::inbox());
}

CForm* CFormFactory::createOutboxForm(QWidget* pParent)
{
    if (creators().outbox)
        return creators().outbox(pParent);
    return placeholderFolder(pParent, CTexts::outbox());
}

CForm* CFormFactory::createSentForm(QWidget* pParent)
{
    if (creators().sent)
        return creators().sent(pParent);
    return placeholderFolder(pParent, CTexts::sentTarviks());
}

CForm* CFormFactory::createComposeForm(QWidget* pParent, int iType, const QString& strRecipient,
                                       const QString& strTitle, const QString& strNote,
                                       double dLatitude, double dLongitude)
{
    if (creators().compose)
        return creators().compose(pParent, iType, strRecipient, strTitle, strNote, dLatitude,
                                  dLongitude);
    qDebug("CFormFactory: placeholder for the compose form");
    return new CPlaceholderForm(pParent, CTexts::sendATarvik(), CTexts::sendATarvik());
}

CForm* CFormFactory::createRegisterForm(QWidget* pParent, int iType, const QString& strNumber,
                                        const QString& strScreenName)
{
    if (creators().reg)
        return creators().reg(pParent, iType, strNumber, strScreenName);
    qDebug("%s", qPrintable(QStringLiteral("CFormFactory: placeholder for the registration "
                                           "form, type %1")
                                .arg(iType)));
    QString strText = CTexts::registrationPrompt();
    if (!strNumber.isEmpty() || !strScreenName.isEmpty())
        strText += QStringLiteral("\n\n") + strNumber + QStringLiteral("\n") + strScreenName;
    return new CPlaceholderForm(pParent, CTexts::settings(), strText);
}

CForm* CFormFactory::createViewForm(QWidget* pParent, const CTarvik& tarvik, int iViewType)
{
    if (creators().view)
        return creators().view(pParent, tarvik, iViewType);
    qDebug("CFormFactory: placeholder for the message view");
    return new CPlaceholderForm(pParent, CTexts::appName(), tarvik.title());
}

CForm* CFormFactory::createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType)
{
    if (creators().map)
        return creators().map(pParent, tarvik, iMapType);
    qDebug("CFormFactory: placeholder for the map, type %d", iMapType);
    return new CPlaceholderForm(pParent, CTexts::appName(),
                                iMapType == eMapRoute ? CTexts::route() : CTexts::map());
}

CForm* CFormFactory::createSendReceivePopup(QWidget* pParent)
{
    if (creators().sendReceive)
        return creators().sendReceive(pParent);
    qDebug("CFormFactory: placeholder for the send/receive popup");
    return new CPlaceholderForm(pParent, CTexts::appName(), CTexts::sendingReceivingTarviks());
}

void CFormFactory::setInboxCreator(const FolderCreator& creator)
{
    creators().inbox = creator;
}

void CFormFactory::setOutboxCreator(const FolderCreator& creator)
{
    creators().outbox = creator;
}

void CFormFactory::setSentCreator(const FolderCreator& creator)
{
    creators().sent = creator;
}

void CFormFactory::setComposeCreator(const ComposeCreator& creator)
{
    creators().compose = creator;
}

void CFormFactory::setRegisterCreator(const RegisterCreator& creator)
{
    creators().reg = creator;
}

void CFormFactory::setViewCreator(const TarvikCreator& creator)
{
    creators().view = creator;
}

void CFormFactory::setMapCreator(const TarvikCreator& creator)
{
    creators().map = creator;
}

void CFormFactory::setSendReceiveCreator(const PopupCreator& creator)
{
    creators().sendReceive = creator;
}

}  // namespace Dravo
