// The contacts plugin: the address book and the chooser behind IContactsModule.
#include <QEventLoop>
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
        CContactChooser chooser(pDialogParent, strLogPrefix);
        QEventLoop loop;
        connect(&chooser, &CContactChooser::finished, &loop, &QEventLoop::quit);
        chooser.start();
        if (!chooser.isFinished()) {
            loop.exec();
        }
        return chooser.result();
    }
};

}  // namespace Dravo

#include "ccontactsplugin.moc"
