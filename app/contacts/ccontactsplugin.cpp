// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The contacts plugin: the address book and the chooser behind IContactsModule.
#include <QObject>

#include "caddressbook.h"
#include "ccontactchooser.h"
#include "icontactsmodule.h"

namespace Dravo {

class CContactsPlugin : public QObject, public IContactsModule
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TARVIK_CONTACTS_MODULE_IID)
    Q_INTERFACES(Dravo::IContactsModule)

public:
    void initialize() override { CAddressBook::instance()->initialize(); }

    QString choose(QWidget* pDialogParent, const QString& strLogPrefix) override
    {
        return CContactChooser::choose(pDialogParent, strLogPrefix);
    }
};

}  // namespace Dravo

#include "ccontactsplugin.moc"
