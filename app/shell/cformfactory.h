// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <functional>

#include "cform.h"
#include "ctarvik.h"

namespace Dravo {

// Where the shell and the screens get the screens they open but do not own: the folder
// forms, the message view, the compose form, the send/receive popup, the map and the
// registration form. Each creator returns a new form with the given parent; the caller
// pushes it. The screen libraries install their creators at start-up (registerScreens()
// in app/screens); a creator left empty makes a placeholder form that says so and
// offers Back, and a test may install its own to see what was asked for.
class CFormFactory
{
public:
    // Registration form modes.
    enum eRegisterType : int
    {
        eRegisterNew = 0,
        eRegisterAgain = 1
    };
    // Compose form modes.
    enum eComposeType : int
    {
        eComposeNew = 0,
        eComposeReply = 1,
        eComposeForward = 2
    };
    // Message view modes.
    enum eViewType : int
    {
        eViewReceived = 0,
        eViewSent = 1
    };
    // Map form modes: the message's position, its position without the parent form
    // behind, and the route from the own position to it.
    enum eMapType : int
    {
        eMapPosition = 0,
        eMapPositionOnly = 1,
        eMapRoute = 2
    };

    using FolderCreator = std::function<CForm*(QWidget* pParent)>;
    // Latitude and longitude are used by a forward only.
    using ComposeCreator = std::function<CForm*(
        QWidget* pParent, int iType, const QString& strRecipient, const QString& strTitle,
        const QString& strNote, double dLatitude, double dLongitude)>;
    using TarvikCreator = std::function<CForm*(QWidget* pParent, const CTarvik& tarvik, int iType)>;
    using PopupCreator = std::function<CForm*(QWidget* pParent)>;
    using RegisterCreator = std::function<CForm*(
        QWidget* pParent, int iType, const QString& strNumber, const QString& strScreenName)>;

    CFormFactory() = delete;

    static CForm* createInboxForm(QWidget* pParent);
    static CForm* createOutboxForm(QWidget* pParent);
    static CForm* createSentForm(QWidget* pParent);
    static CForm* createComposeForm(QWidget* pParent, int iType, const QString& strRecipient,
                                    const QString& strTitle, const QString& strNote,
                                    double dLatitude = 0.0, double dLongitude = 0.0);
    static CForm* createViewForm(QWidget* pParent, const CTarvik& tarvik, int iViewType);
    static CForm* createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType);
    static CForm* createSendReceivePopup(QWidget* pParent);
    static CForm* createRegisterForm(QWidget* pParent, int iType, const QString& strNumber,
                                     const QString& strScreenName);

    // Replace a creator (a later screen module, or a test). An empty function restores
    // the default.
    static void setInboxCreator(const FolderCreator& creator);
    static void setOutboxCreator(const FolderCreator& creator);
    static void setSentCreator(const FolderCreator& creator);
    static void setComposeCreator(const ComposeCreator& creator);
    static void setRegisterCreator(const RegisterCreator& creator);
    static void setViewCreator(const TarvikCreator& creator);
    static void setMapCreator(const TarvikCreator& creator);
    static void setSendReceiveCreator(const PopupCreator& creator);
};

}  // namespace Dravo
