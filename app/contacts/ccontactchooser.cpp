// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactchooser.h"

#include <QEventLoop>
#include <QtDebug>

#include "caddressbook.h"
#include "ccontactchooserdialog.h"
#include "ccontactdetaildialog.h"

namespace Dravo {

CContactChooser::CContactChooser(QWidget* pDialogParent, const QString& strLogPrefix,
                                 QObject* parent)
    : QObject(parent), m_pDialogParent(pDialogParent), m_strPrefix(strLogPrefix)
{
}

CContactChooser::~CContactChooser()
{
    disconnect(m_loadConnection);
    for (QDialog* dialog : {static_cast<QDialog*>(m_pChooser), static_cast<QDialog*>(m_pDetail)}) {
        if (dialog) {
            dialog->disconnect(this);
            delete dialog;
        }
    }
}

QString CContactChooser::choose(QWidget* pDialogParent, const QString& strLogPrefix)
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

void CContactChooser::log(const char* text) const
{
    qDebug().noquote() << m_strPrefix + QLatin1Char(' ') + QLatin1String(text);
}

void CContactChooser::critical(const char* text) const
{
    qCritical().noquote() << m_strPrefix + QLatin1Char(' ') + QLatin1String(text);
}

void CContactChooser::start()
{
    if (m_bStarted) {
        return;
    }
    m_bStarted = true;
    m_pChooser = new CContactChooserDialog(m_pDialogParent);
    m_pChooser->setWindowModality(Qt::ApplicationModal);
    connect(m_pChooser, &QDialog::finished, this, &CContactChooser::onChooserFinished);
    // Deleted with its parent before it was answered: counts as closed.
    connect(m_pChooser, &QObject::destroyed, this, [this]() {
        if (!m_bFinished && !m_pDetail) {
            log("chooser GTK_RESPONSE_DELETE_EVENT nothing selected");
            finish(QString());
        }
    });
    CAddressBook* book = CAddressBook::instance();
    m_loadConnection =
        connect(book, &CAddressBook::contactsLoaded, this, &CContactChooser::onContactsLoaded);
    book->requestContacts();
    if (m_bFinished) {
        return;  // the address book answered at once that it is not available
    }
    m_pChooser->show();
    Q_EMIT chooserShown(m_pChooser);
}

// Called with the kept contacts at once and again when a new read finds others.
void CContactChooser::onContactsLoaded(const CContactEntryList& contacts, const QString& error)
{
    if (!m_pChooser) {
        return;
    }
    if (!error.isEmpty()) {
        disconnect(m_loadConnection);
        // Without an address book there is nothing to choose from: the chooser goes away at
        // once and the caller gets an empty text, so the compose form keeps what was typed.
        qWarning().noquote() << m_strPrefix + QStringLiteral(" address book not available: ") +
                                    error;
        critical("can't create chooser dialog");
        CContactChooserDialog* dialog = m_pChooser;
        dialog->disconnect(this);
        dialog->hide();
        dialog->deleteLater();
        finish(QString());
        return;
    }
    m_pChooser->setContacts(contacts);
}

QString CContactChooser::firstAddress(const CContactEntry& contact, int* count)
{
    QString result;
    int n = 0;
    for (const CContactEntry::Attribute& attribute : contact.attributes()) {
        if (CContactEntry::isAddressAttribute(attribute.first)) {
            if (n == 0) {
                result = attribute.second;
            }
            ++n;
        }
    }
    if (count) {
        *count = n;
    }
    return result;
}

void CContactChooser::onChooserFinished(int result)
{
    disconnect(m_loadConnection);
    CContactChooserDialog* dialog = m_pChooser;
    if (dialog) {
        dialog->hide();
        dialog->deleteLater();
    }
    if (result != QDialog::Accepted || !dialog) {
        log("chooser GTK_RESPONSE_DELETE_EVENT nothing selected");
        finish(QString());
        return;
    }
    const CContactEntryList selection = dialog->selectedContacts();
    if (selection.isEmpty()) {
        log("nothing selected");
        finish(QString());
        return;
    }
    // Further chosen contacts are ignored.
    const CContactEntry contact = selection.first();
    int count = 0;
    const QString first = firstAddress(contact, &count);
    qDebug().noquote() << m_strPrefix +
                              QStringLiteral(" total amount of phones/emails = %1").arg(count);
    if (count == 0) {
        critical("contact has no phones/emails!");
    }
    if (count < 2) {
        finish(first);
        return;
    }
    m_pDetail = new CContactDetailDialog(contact, m_pDialogParent);
    m_pDetail->setWindowModality(Qt::ApplicationModal);
    connect(m_pDetail, &QDialog::finished, this, &CContactChooser::onDetailFinished);
    connect(m_pDetail, &QObject::destroyed, this, [this]() {
        if (!m_bFinished) {
            log("details GTK_RESPONSE_DELETE_EVENT nothing selected");
            finish(QString());
        }
    });
    m_pDetail->show();
    Q_EMIT detailShown(m_pDetail);
}

void CContactChooser::onDetailFinished(int result)
{
    CContactDetailDialog* dialog = m_pDetail;
    if (dialog) {
        dialog->hide();
        dialog->deleteLater();
    }
    if (result != QDialog::Accepted || !dialog) {
        log("details GTK_RESPONSE_DELETE_EVENT nothing selected");
        finish(QString());
        return;
    }
    const QString value = dialog->selectedValue();
    if (value.isEmpty()) {
        critical("can't get selected field from details!");
        finish(QString());
        return;
    }
    finish(value);
}

void CContactChooser::finish(const QString& result)
{
    if (m_bFinished) {
        return;
    }
    m_bFinished = true;
    m_strResult = result;
    Q_EMIT finished(result);
}

}  // namespace Dravo
