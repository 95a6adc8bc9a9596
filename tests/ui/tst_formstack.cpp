// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QLayout>
#include <QLineEdit>
#include <QtTest>

#include "cformstack.h"

using namespace Dravo;

namespace {

// A form whose handler obeys the lock and asks m_iCloseRequests times to be closed. Its line
// edit would take the focus if the form did not hand it to its focus holder.
class CTestForm : public CForm
{
public:
    CTestForm(const QString& strTitle, bool bPopup, QWidget* parent)
        : CForm(parent), m_strTitle(strTitle), m_bPopup(bPopup)
    {
        layout()->addWidget(new QLineEdit(this));
    }

    QString title() const override { return m_strTitle; }
    bool showsFormBelow() const override { return m_bPopup; }
    void setTitle(const QString& strTitle)
    {
        m_strTitle = strTitle;
        emit updateTitle(this);
    }

    void onBtnCloseClick()
    {
        if (buttonsLocked())
            return;
        lockButtons();
        ++m_iAccepted;
        for (int i = 0; i < m_iCloseRequests; ++i)
            emit closeForm(true, this);
        // The stack must not act before the handler has returned.
        m_bInStackAfterRequest = qobject_cast<CFormStack*>(parentWidget())->indexOf(this) >= 0;
    }

    QString m_strTitle;
    bool m_bPopup;
    int m_iAccepted = 0;
    int m_iCloseRequests = 1;
    bool m_bInStackAfterRequest = false;
};

}  // namespace

class tst_FormStack : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_pStack = new CFormStack;
        m_pStack->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pStack));
    }

    void cleanup() { delete m_pStack; }

    void showFormAndFocus()
    {
        QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
        m_pStack->showForm(nullptr);
        m_pStack->closeForm(true);
        m_pStack->updateTitle(nullptr);
        QCOMPARE(m_pStack->count(), 0);
        QCOMPARE(titleSpy.count(), 0);

        CTestForm* pForm = show("Compose");
        QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Compose"));
        QCOMPARE(titleSpy.count(), 1);
        // The invisible focus holder, not the line edit, has the focus.
        QVERIFY(pForm->focusWidget());
        QCOMPARE(pForm->focusWidget()->maximumSize(), QSize(0, 0));
    }

    void queuedCloseFromButtonHandler_data()
    {
        QTest::addColumn<int>("requests");
        QTest::addColumn<bool>("formBelow");
        QTest::newRow("one request") << 1 << true;
        QTest::newRow("second request for a deleted form") << 2 << true;
        QTest::newRow("the only form") << 1 << false;
    }

    void queuedCloseFromButtonHandler()
    {
        QFETCH(int, requests);
        QFETCH(bool, formBelow);
        if (formBelow)
            show("Menu");
        QPointer<CTestForm> pForm = show("About", true);
        pForm->m_iCloseRequests = requests;
        QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
        if (requests > 1)
            QTest::ignoreMessage(QtWarningMsg, "CFormStack::closeForm form is not in the stack");
        pForm->onBtnCloseClick();
        QVERIFY(pForm->m_bInStackAfterRequest);
        QTRY_VERIFY(pForm.isNull());
        QCoreApplication::processEvents();
        QCOMPARE(m_pStack->count(), formBelow ? 1 : 0);
        // With no form left nobody is told to change the window title.
        QCOMPARE(titleSpy.count(), formBelow ? 1 : 0);
        QCOMPARE(m_pStack->currentTitle(), formBelow ? QStringLiteral("Menu") : QString());
    }

    void closeDeletingOrKeeping_data()
    {
        QTest::addColumn<bool>("destroy");
        QTest::addColumn<int>("named");  // the form passed of A, B, C; -1: none, so the current one
        QTest::newRow("delete current") << true << -1;
        QTest::newRow("delete named top") << true << 2;
        QTest::newRow("keep current") << false << -1;
        QTest::newRow("keep named top") << false << 2;
        QTest::newRow("delete below the top") << true << 1;
    }

    void closeDeletingOrKeeping()
    {
        QFETCH(bool, destroy);
        QFETCH(int, named);
        const QList<QPointer<CTestForm>> forms = {show("A"), show("B"), show("C")};
        QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
        m_pStack->closeForm(destroy, named < 0 ? nullptr : forms[named].data());
        const int iClosed = named < 0 ? 2 : named;
        QCOMPARE(forms[iClosed].isNull(), destroy);
        QCOMPARE(m_pStack->count(), 2);
        QCOMPARE(m_pStack->currentForm(), forms[iClosed == 2 ? 1 : 2].data());
        QVERIFY(m_pStack->currentForm()->isVisible());
        // Asked again even when the current form stays.
        QCOMPARE(titleSpy.count(), 1);
        if (!destroy) {
            // Kept by its holder; it can be shown again.
            m_pStack->showForm(forms[iClosed]);
            QCOMPARE(m_pStack->currentForm(), forms[iClosed].data());
        }
    }

    void belowFormRule()
    {
        QList<CTestForm*> forms;
        auto visible = [&forms]() {
            QStringList titles;
            for (const CTestForm* pForm : forms)
                if (pForm->isVisible())
                    titles << pForm->title();
            return titles.join(QLatin1Char(' '));
        };
        forms << show("A") << show("B");
        QCOMPARE(visible(), QStringLiteral("B"));
        forms << show("P1", true);
        QCOMPARE(visible(), QStringLiteral("B P1"));
        // A popup over a popup: only the form directly beneath is made visible.
        forms << show("P2", true);
        QCOMPARE(visible(), QStringLiteral("B P1 P2"));
        m_pStack->closeForm(true, forms.takeLast());
        QCOMPARE(visible(), QStringLiteral("B P1"));

        // A popup alone in the stack shows nothing beneath and does no harm.
        m_pStack->closeForm(true, forms.takeFirst());
        m_pStack->closeForm(true, forms.takeFirst());
        m_pStack->closeForm(false, forms.first());
        m_pStack->showForm(forms.first());
        QCOMPARE(visible(), QStringLiteral("P1"));
    }

    void buttonLock()
    {
        CTestForm* pForm = show("Locked");
        pForm->m_iCloseRequests = 0;
        QElapsedTimer clock;
        clock.start();
        pForm->onBtnCloseClick();
        QTest::qWait(300);
        pForm->onBtnCloseClick();  // dropped
        QCOMPARE(pForm->m_iAccepted, 1);
        QTRY_VERIFY_WITH_TIMEOUT(!pForm->buttonsLocked(), 2000);
        QVERIFY(clock.elapsed() >= 500);
        pForm->onBtnCloseClick();
        QCOMPARE(pForm->m_iAccepted, 2);
    }

private:
    CTestForm* show(const char* pTitle, bool bPopup = false)
    {
        CTestForm* pForm = new CTestForm(QString::fromLatin1(pTitle), bPopup, m_pStack);
        m_pStack->showForm(pForm);
        return pForm;
    }

    CFormStack* m_pStack = nullptr;
};

QTEST_MAIN(tst_FormStack)
#include "tst_formstack.moc"
