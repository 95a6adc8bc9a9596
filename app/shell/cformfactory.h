#pragma once

#include <QString>
#include <functional>

#include "cform.h"

namespace Dravo {

// Where the shell gets the screens it opens but does not own: the folder forms, the
// compose form and the registration form. Each creator returns a new form with the
// given parent; the caller pushes it. Until a screen exists, its creator makes a
// placeholder form that says so and offers Back.
class CFormFactory
{
public:
    // Registration form modes.
    enum eRegisterType
    {
        eRegisterNew = 0,
        eRegisterAgain = 1
    };
    // Compose form modes; only a new message is opened from the shell.
    enum eComposeType
    {
        eComposeNew = 0
    };

    using FolderCreator = std::function<CForm*(QWidget* pParent)>;
    using ComposeCreator =
        std::function<CForm*(QWidget* pParent, int iType, const QString& strRecipient,
                             const QString& strTitle, const QString& strNote)>;
    using RegisterCreator = std::function<CForm*(
        QWidget* pParent, int iType, const QString& strNumber, const QString& strScreenName)>;

    CFormFactory() = delete;

    static CForm* createInboxForm(QWidget* pParent);
    static CForm* createOutboxForm(QWidget* pParent);
    static CForm* createSentForm(QWidget* pParent);
    static CForm* createComposeForm(QWidget* pParent, int iType, const QString& strRecipient,
                                    const QString& strTitle, const QString& strNote);
    static CForm* createRegisterForm(QWidget* pParent, int iType, const QString& strNumber,
                                     const QString& strScreenName);

    // Replace a creator (a later screen module, or a test). An empty function restores
    // the default.
    static void setInboxCreator(const FolderCreator& creator);
    static void setOutboxCreator(const FolderCreator& creator);
    static void setSentCreator(const FolderCreator& creator);
    static void setComposeCreator(const ComposeCreator& creator);
    static void setRegisterCreator(const RegisterCreator& creator);
};

}  // namespace Dravo
