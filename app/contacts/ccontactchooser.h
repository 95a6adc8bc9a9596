// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>

#include "ccontactchooserdialog.h"
#include "ccontactdetaildialog.h"
#include "ccontactentry.h"

namespace Dravo {

// Picks one recipient from the address book: the contact list first, then, when
// the chosen contact has two or more phone numbers or e-mail addresses, the detail
// selector. The result is that phone number or e-mail address, or empty when
// nothing was chosen, the address book is unreachable, or the user cancelled.
class CContactChooser : public QObject
{
    Q_OBJECT
public:
    explicit CContactChooser(
        QWidget* pDialogParent = nullptr,
        const QString& strLogPrefix = QStringLiteral("CComposeTarvikForm::onBtnContactsClick"),
        QObject* parent = nullptr);
    ~CContactChooser() override;

    // Runs both steps and returns the result; the dialogs are modal and the event
    // loop keeps running meanwhile.
    static QString choose(
        QWidget* pDialogParent = nullptr,
        const QString& strLogPrefix = QStringLiteral("CComposeTarvikForm::onBtnContactsClick"));

    // Opens the contact list; finished() follows exactly once.
    void start();
    bool isFinished() const { return m_bFinished; }
    QString result() const { return m_strResult; }
    CContactChooserDialog* chooserDialog() const { return m_pChooser; }
    CContactDetailDialog* detailDialog() const { return m_pDetail; }

    // The address of a chosen contact when no second step is needed, and the
    // number of phone numbers and e-mail addresses it has.
    static QString firstAddress(const CContactEntry& contact, int* count);

Q_SIGNALS:
    void chooserShown(Dravo::CContactChooserDialog* dialog);
    void detailShown(Dravo::CContactDetailDialog* dialog);
    void finished(const QString& result);

private:
    void onContactsLoaded(const CContactEntryList& contacts, const QString& error);
    void onChooserFinished(int result);
    void onDetailFinished(int result);
    void finish(const QString& result);
    void log(const char* text) const;
    void critical(const char* text) const;

    QPointer<QWidget> m_pDialogParent;
    QString m_strPrefix;
    QPointer<CContactChooserDialog> m_pChooser;
    QPointer<CContactDetailDialog> m_pDetail;
    QMetaObject::Connection m_loadConnection;
    QString m_strResult;
    bool m_bStarted = false;
    bool m_bFinished = false;
};

}  // namespace Dravo
