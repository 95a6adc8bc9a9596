// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <memory>

#include "capplicationstyle.h"
#include "ccomposetarvikform.h"
#include "ccontactsmodule.h"
#include "cedsfixture.h"
#include "cformstack.h"
#include "uiresources.h"

using namespace Dravo;

// The Contacts button over a real address book (Evolution Data Server on a private
// bus), through the plugin the client loads: two contacts chosen one after the other,
// the second through the detail selector, end up comma-joined in the recipient line.
class TestComposeContacts : public QObject
{
    Q_OBJECT

private:
    Test::CEdsFixture m_eds;
    CFormStack m_stack;

    // Picks `strName` in the next chooser and, when a detail list follows, its row.
    void pickNext(const QString& strName, int iDetailRow, const QString& strShot)
    {
        auto* pTimer = new QTimer(this);
        pTimer->setInterval(50);
        auto bChooserDone = std::make_shared<bool>(false);
        connect(pTimer, &QTimer::timeout, [=] {
            auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!pDialog)
                return;
            if (strName.isEmpty()) {
                pTimer->deleteLater();
                pDialog->reject();
                return;
            }
            if (!*bChooserDone) {
                auto* pList = pDialog->findChild<QListView*>();
                auto* pSearch = pDialog->findChild<QLineEdit*>();
                if (!pList || !pSearch || pList->model()->rowCount() == 0)
                    return;
                pSearch->setText(strName);
                if (pList->model()->rowCount() != 1)
                    return;
                const QString strDir = qEnvironmentVariable("TARVIK_SCREENSHOT_DIR");
                if (!strShot.isEmpty() && !strDir.isEmpty()) {
                    QPixmap pixmap = m_stack.grab();
                    // The dialog is a window of its own; drawn centred over the form.
                    const QPixmap dialog = pDialog->grab();
                    QPainter painter(&pixmap);
                    painter.drawPixmap(pixmap.rect().center() - dialog.rect().center(), dialog);
                    painter.end();
                    pixmap.save(strDir + "/" + strShot + ".png");
                }
                pList->setCurrentIndex(pList->model()->index(0, 0));
                *bChooserDone = true;
                pDialog->accept();
                if (iDetailRow < 0)
                    pTimer->deleteLater();
                return;
            }
            auto* pDetails = pDialog->findChild<QListWidget*>();
            if (!pDetails)
                return;
            pDetails->setCurrentRow(iDetailRow);
            pTimer->deleteLater();
            pDialog->accept();
        });
        pTimer->start();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_eds.start(), qPrintable(m_eds.errorString()));
        const auto vcard = &Test::CEdsFixture::vcard;
        QVERIFY(m_eds.addContacts(
            {vcard("Ann Example", {"TEL;TYPE=CELL:+15550111"}),
             vcard("Bob Example", {"TEL;TYPE=CELL:+15550122", "EMAIL:bob@example.org"})}));
        initUiResources();
        CApplicationStyle::install();
        QSignalSpy loaded(CContactsModule::instance(), &CContactsModule::loaded);
        CContactsModule::instance()->loadInBackground();
        QVERIFY(loaded.wait(20000));
        QVERIFY2(loaded.first().at(0).toBool(),
                 qPrintable(CContactsModule::instance()->errorString()));
        m_stack.setBrush(QBrush(Qt::black));
        m_stack.resize(800, 450);
        m_stack.show();
    }

    void commaRule_data()
    {
        QTest::addColumn<QString>("initial");
        QTest::addColumn<QStringList>("picks");  // name, or empty to cancel
        QTest::addColumn<QString>("expected");
        QTest::newRow("two contacts, the second through its details")
            << "" << QStringList{"Ann", "Bob"} << "+15550111,bob@example.org";
        QTest::newRow("typed, ends in a comma")
            << "+1555," << QStringList{"Ann"} << "+1555,+15550111";
        QTest::newRow("cancelled") << "+1555" << QStringList{""} << "+1555";
    }

    void commaRule()
    {
        QFETCH(QString, initial);
        QFETCH(QStringList, picks);
        QFETCH(QString, expected);
        auto* pForm = new CComposeTarvikForm(&m_stack, 0, initial, QString(), QString());
        m_stack.showForm(pForm);
        QTest::qWait(20);
        for (const QString& strName : picks) {
            pickNext(strName, strName == "Bob" ? 1 : -1,
                     strName == "Ann" && initial.isEmpty() ? "contact-chooser" : QString());
            QTest::mouseClick(pForm->btnContacts(), Qt::LeftButton);
            QTRY_VERIFY(!pForm->buttonsLocked());
        }
        QCOMPARE(pForm->lineEditTo()->text(), expected);
        QCOMPARE(pForm->lineEditTo()->cursorPosition(), expected.size());
        m_stack.closeForm(true, pForm);
    }
};

QTEST_MAIN(TestComposeContacts)
#include "tst_composecontacts.moc"
