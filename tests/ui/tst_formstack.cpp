#include <QtTest>

#include <QLayout>
#include <QLineEdit>
#include <QPushButton>

#include "cformstack.h"

using namespace Dravo;

namespace {

// A form with one button whose handler obeys the lock and may close the form.
class CTestForm : public CForm
{
    Q_OBJECT
public:
    CTestForm(const QString& strTitle, bool bPopup, QWidget* parent)
        : CForm(parent), m_strTitle(strTitle), m_bPopup(bPopup)
    {
        m_pButton = new QPushButton(QStringLiteral("Close"), this);
        layout()->addWidget(m_pButton);
        m_pEdit = new QLineEdit(this);
        layout()->addWidget(m_pEdit);
        connect(m_pButton, &QPushButton::clicked, this, &CTestForm::onBtnCloseClick);
    }
    QString title() const override { return m_strTitle; }
    bool showsFormBelow() const override { return m_bPopup; }
    void setTitle(const QString& strTitle)
    {
        m_strTitle = strTitle;
        emit updateTitle(this);
    }

    QPushButton* m_pButton;
    QLineEdit* m_pEdit;
    int m_iAccepted = 0;
    int m_iCloseRequests = 1;
    bool m_bStillHereAfterRequest = false;
    bool m_bStillInStackAfterRequest = false;

public slots:
    void onBtnCloseClick()
    {
        if (buttonsLocked())
            return;
        lockButtons();
        ++m_iAccepted;
        for (int i = 0; i < m_iCloseRequests; ++i)
            emit closeForm(true, this);
        // The stack must not act before the handler has returned.
        CFormStack* pStack = qobject_cast<CFormStack*>(parentWidget());
        m_bStillInStackAfterRequest = pStack && pStack->indexOf(this) >= 0;
        m_bStillHereAfterRequest = m_pButton->isVisible();
    }

private:
    QString m_strTitle;
    bool m_bPopup;
};

}  // namespace

class tst_FormStack : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void showAndTitle();
    void nullFormIgnored();
    void focusHolderTakesFocus();
    void queuedCloseFromButtonHandler();
    void secondQueuedCloseOfDeletedForm();
    void closeDeletingOrKeeping_data();
    void closeDeletingOrKeeping();
    void closeFormBelowTop();
    void closeOnlyFormReportsNoTitle();
    void belowFormRule();
    void titleSignalOnlyForCurrentForm();
    void formShowsFormThroughStack();
    void buttonLock();
    void stackDeletesForms();

private:
    CFormStack* m_pStack = nullptr;
};

void tst_FormStack::init()
{
    m_pStack = new CFormStack;
    m_pStack->resize(400, 300);
    m_pStack->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_pStack));
}

void tst_FormStack::cleanup()
{
    delete m_pStack;
    m_pStack = nullptr;
}

void tst_FormStack::showAndTitle()
{
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
    QCOMPARE(m_pStack->currentTitle(), QString());
    CTestForm* pForm = new CTestForm(QStringLiteral("Inbox"), false, m_pStack);
    m_pStack->showForm(pForm);
    QCOMPARE(m_pStack->currentForm(), pForm);
    QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Inbox"));
    QCOMPARE(titleSpy.count(), 1);
    QVERIFY(pForm->isVisible());
}

void tst_FormStack::nullFormIgnored()
{
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
    m_pStack->showForm(nullptr);
    m_pStack->closeForm(true);
    m_pStack->updateTitle(nullptr);
    QCOMPARE(m_pStack->count(), 0);
    QCOMPARE(titleSpy.count(), 0);
}

void tst_FormStack::focusHolderTakesFocus()
{
    CTestForm* pForm = new CTestForm(QStringLiteral("Compose"), false, m_pStack);
    m_pStack->showForm(pForm);
    QWidget* pFocus = pForm->focusWidget();
    QVERIFY(pFocus);
    QVERIFY(pFocus != pForm->m_pEdit);
    QCOMPARE(pFocus->maximumSize(), QSize(0, 0));
    QCOMPARE(pFocus->focusPolicy(), Qt::StrongFocus);
}

void tst_FormStack::queuedCloseFromButtonHandler()
{
    CTestForm* pBottom = new CTestForm(QStringLiteral("Menu"), false, m_pStack);
    m_pStack->showForm(pBottom);
    QPointer<CTestForm> pForm = new CTestForm(QStringLiteral("About"), false, m_pStack);
    m_pStack->showForm(pForm);
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);

    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QVERIFY(!pForm.isNull());
    QVERIFY(pForm->m_bStillInStackAfterRequest);
    QVERIFY(pForm->m_bStillHereAfterRequest);
    QTRY_VERIFY(pForm.isNull());
    QCOMPARE(m_pStack->count(), 1);
    QCOMPARE(m_pStack->currentForm(), pBottom);
    QCOMPARE(titleSpy.count(), 1);
    QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Menu"));
}

void tst_FormStack::secondQueuedCloseOfDeletedForm()
{
    CTestForm* pBottom = new CTestForm(QStringLiteral("Menu"), false, m_pStack);
    m_pStack->showForm(pBottom);
    QPointer<CTestForm> pForm = new CTestForm(QStringLiteral("Popup"), true, m_pStack);
    pForm->m_iCloseRequests = 2;
    m_pStack->showForm(pForm);
    QTest::ignoreMessage(QtWarningMsg, "CFormStack::closeForm form is not in the stack");
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QTRY_VERIFY(pForm.isNull());
    QCoreApplication::processEvents();
    // The second request closed nothing else.
    QCOMPARE(m_pStack->count(), 1);
    QCOMPARE(m_pStack->currentForm(), pBottom);
}

void tst_FormStack::closeDeletingOrKeeping_data()
{
    QTest::addColumn<bool>("destroy");
    QTest::addColumn<bool>("passForm");
    QTest::newRow("delete, named") << true << true;
    QTest::newRow("delete, current") << true << false;
    QTest::newRow("keep, named") << false << true;
    QTest::newRow("keep, current") << false << false;
}

void tst_FormStack::closeDeletingOrKeeping()
{
    QFETCH(bool, destroy);
    QFETCH(bool, passForm);
    CTestForm* pBottom = new CTestForm(QStringLiteral("Menu"), false, m_pStack);
    m_pStack->showForm(pBottom);
    QPointer<CTestForm> pForm = new CTestForm(QStringLiteral("Sent"), false, m_pStack);
    m_pStack->showForm(pForm);
    QVERIFY(!pBottom->isVisible());

    m_pStack->closeForm(destroy, passForm ? pForm.data() : nullptr);
    QCOMPARE(pForm.isNull(), destroy);
    QCOMPARE(m_pStack->count(), 1);
    QCOMPARE(m_pStack->currentForm(), pBottom);
    QVERIFY(pBottom->isVisible());
    if (!destroy) {
        QCOMPARE(m_pStack->indexOf(pForm), -1);
        // Kept by its holder; it can be shown again.
        m_pStack->showForm(pForm);
        QCOMPARE(m_pStack->currentForm(), pForm.data());
    }
}

void tst_FormStack::closeFormBelowTop()
{
    CTestForm* pA = new CTestForm(QStringLiteral("A"), false, m_pStack);
    QPointer<CTestForm> pB = new CTestForm(QStringLiteral("B"), false, m_pStack);
    CTestForm* pC = new CTestForm(QStringLiteral("C"), false, m_pStack);
    m_pStack->showForm(pA);
    m_pStack->showForm(pB);
    m_pStack->showForm(pC);
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
    m_pStack->closeForm(true, pB);
    QVERIFY(pB.isNull());
    QCOMPARE(m_pStack->currentForm(), pC);
    QCOMPARE(m_pStack->indexOf(pA), 0);
    QCOMPARE(m_pStack->count(), 2);
    QCOMPARE(titleSpy.count(), 1);  // the current form is unchanged but asked again
}

void tst_FormStack::closeOnlyFormReportsNoTitle()
{
    CTestForm* pForm = new CTestForm(QStringLiteral("Only"), false, m_pStack);
    m_pStack->showForm(pForm);
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QTRY_COMPARE(m_pStack->count(), 0);
    // No form: nobody is told to change the window title, and the title read is empty.
    QCOMPARE(titleSpy.count(), 0);
    QCOMPARE(m_pStack->currentTitle(), QString());
    QCOMPARE(m_pStack->currentForm(), nullptr);
}

void tst_FormStack::belowFormRule()
{
    CTestForm* pA = new CTestForm(QStringLiteral("A"), false, m_pStack);
    CTestForm* pB = new CTestForm(QStringLiteral("B"), false, m_pStack);
    CTestForm* pP1 = new CTestForm(QStringLiteral("P1"), true, m_pStack);
    CTestForm* pP2 = new CTestForm(QStringLiteral("P2"), true, m_pStack);
    m_pStack->showForm(pA);
    m_pStack->showForm(pB);
    QVERIFY(!pA->isVisible());
    m_pStack->showForm(pP1);
    QVERIFY(pB->isVisible());
    QVERIFY(pP1->isVisible());
    QVERIFY(!pA->isVisible());

    // A popup over a popup: only the form directly beneath is made visible.
    m_pStack->showForm(pP2);
    QVERIFY(pP2->isVisible());
    QVERIFY(pP1->isVisible());
    QVERIFY(!pA->isVisible());
    QCOMPARE(m_pStack->currentForm(), pP2);

    // Closing the top popup: the popup beneath is current and B still shows under it.
    m_pStack->closeForm(true, pP2);
    QCOMPARE(m_pStack->currentForm(), pP1);
    QVERIFY(pP1->isVisible());
    QVERIFY(pB->isVisible());
    QVERIFY(!pA->isVisible());

    // A popup alone at the bottom of a stack shows nothing beneath and does no harm.
    m_pStack->closeForm(true, pB);
    m_pStack->closeForm(true, pA);
    QCOMPARE(m_pStack->count(), 1);
    m_pStack->closeForm(false, pP1);
    m_pStack->showForm(pP1);
    QVERIFY(pP1->isVisible());
}

void tst_FormStack::titleSignalOnlyForCurrentForm()
{
    CTestForm* pBelow = new CTestForm(QStringLiteral("Inbox"), false, m_pStack);
    CTestForm* pTop = new CTestForm(QStringLiteral("Message"), false, m_pStack);
    m_pStack->showForm(pBelow);
    m_pStack->showForm(pTop);
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);

    pBelow->setTitle(QStringLiteral("Inbox (3)"));
    QCOMPARE(titleSpy.count(), 0);
    QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Message"));

    pTop->setTitle(QStringLiteral("Message from Ann"));
    QCOMPARE(titleSpy.count(), 1);
    QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Message from Ann"));

    m_pStack->closeForm(true, pTop);
    QCOMPARE(titleSpy.count(), 2);
    QCOMPARE(m_pStack->currentTitle(), QStringLiteral("Inbox (3)"));
}

void tst_FormStack::formShowsFormThroughStack()
{
    CTestForm* pMenu = new CTestForm(QStringLiteral("Menu"), false, m_pStack);
    m_pStack->showForm(pMenu);
    CTestForm* pNext = new CTestForm(QStringLiteral("Next"), false, m_pStack);
    emit pMenu->showForm(pNext);
    QCOMPARE(m_pStack->currentForm(), pNext);  // direct, at once
    // Showing the same form again does not double its connections: one close, one title.
    QSignalSpy titleSpy(m_pStack, &CFormStack::onTitleUpdate);
    m_pStack->closeForm(false, pNext);
    m_pStack->showForm(pNext);
    titleSpy.clear();
    pNext->setTitle(QStringLiteral("Renamed"));
    QCOMPARE(titleSpy.count(), 1);
}

void tst_FormStack::buttonLock()
{
    CTestForm* pForm = new CTestForm(QStringLiteral("Locked"), false, m_pStack);
    pForm->m_iCloseRequests = 0;
    m_pStack->showForm(pForm);
    QElapsedTimer clock;
    clock.start();
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QCOMPARE(pForm->m_iAccepted, 1);
    QVERIFY(pForm->buttonsLocked());
    QTest::qWait(300);
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QCOMPARE(pForm->m_iAccepted, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!pForm->buttonsLocked(), 2000);
    QVERIFY(clock.elapsed() >= CForm::UNLOCK_INTERVAL);
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QCOMPARE(pForm->m_iAccepted, 2);
    // A press that is dropped does not extend the lock.
    clock.restart();
    QTest::mouseClick(pForm->m_pButton, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!pForm->buttonsLocked(), 2000);
    QVERIFY(clock.elapsed() < 2 * CForm::UNLOCK_INTERVAL + 400);
}

void tst_FormStack::stackDeletesForms()
{
    QPointer<CTestForm> pA = new CTestForm(QStringLiteral("A"), false, m_pStack);
    QPointer<CTestForm> pB = new CTestForm(QStringLiteral("B"), true, m_pStack);
    m_pStack->showForm(pA);
    m_pStack->showForm(pB);
    delete pA.data();  // a form deleted while in the stack leaves it
    QCOMPARE(m_pStack->count(), 1);
    QCOMPARE(m_pStack->currentForm(), pB.data());
    delete m_pStack;
    m_pStack = nullptr;
    QVERIFY(pB.isNull());
}

QTEST_MAIN(tst_FormStack)
#include "tst_formstack.moc"
