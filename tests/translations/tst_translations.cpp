// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QAbstractButton>
#include <QLabel>
#include <QListWidget>
#include <QStyleOptionButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include "caboutform.h"
#include "ccomposetarvikform.h"
#include "cinboxform.h"
#include "cmainmenuform.h"
#include "coutboxform.h"
#include "cregisterform.h"
#include "csentform.h"
#include "ctextpopupform.h"
#include "ctexts.h"
#include "ctitle.h"
#include "ctranslations.h"
#include "cviewtarvikform.h"
#include "folderfixture.h"

using namespace Dravo;
using TarvikTest::makeTarvik;

// Runs in one language per process (the texts are translated once): CTest starts it
// with the C, German and Finnish locales.
class TestTranslations : public QObject
{
    Q_OBJECT

    TarvikTest::CShellFixture m_fixture;
    QString m_strLanguage;  // "de", "fi", or empty for English

    // Texts that read the same in a language as in English.
    QStringList sameAsEnglish() const
    {
        QStringList lst{"tarvik", "tarvik v ", "%1 (%n)", "%1 m", "%1 km", "%1 min"};
        if (m_strLanguage == "de")
            lst << "Route";
        return lst;
    }

    // Why a text does not fit its widget, or an empty string.
    static QString misfit(QWidget* pWidget)
    {
        const QString strWhere = QString::fromLatin1(pWidget->metaObject()->className());
        if (auto* pButton = qobject_cast<QAbstractButton*>(pWidget)) {
            if (pButton->text().isEmpty())
                return QString();
            // A button with a set width must hold its text at that width: a wider text
            // would widen its whole bar.
            QStyleOptionButton opt;
            opt.initFrom(pButton);
            opt.text = pButton->text();
            if (pButton->minimumWidth() > 0)
                opt.rect.setWidth(qMin(opt.rect.width(), pButton->minimumWidth()));
            const QRect rect =
                pButton->style()->subElementRect(QStyle::SE_PushButtonContents, &opt, pButton);
            const QFontMetrics fm(pButton->font());
            const QStringList lstLines = pButton->text().split('\n');
            int iWidest = 0;
            for (const QString& strLine : lstLines)
                iWidest = qMax(iWidest, fm.horizontalAdvance(strLine));
            const int iHigh = int(lstLines.size()) * fm.height();
            if (iWidest > rect.width() || iHigh > rect.height()) {
                return QStringLiteral("%1 \"%2\": text %3x%4, room %5x%6")
                    .arg(strWhere, pButton->text())
                    .arg(iWidest)
                    .arg(iHigh)
                    .arg(rect.width())
                    .arg(rect.height());
            }
            return QString();
        }
        if (auto* pLabel = qobject_cast<QLabel*>(pWidget)) {
            if (pLabel->text().isEmpty())
                return QString();
            const QRect rect = pLabel->contentsRect();
            QSize needed;
            if (pLabel->textFormat() == Qt::RichText) {
                QTextDocument doc;
                doc.setDocumentMargin(0);
                doc.setDefaultFont(pLabel->font());
                doc.setHtml(pLabel->text());
                needed = QSize(qCeil(doc.idealWidth()), qCeil(doc.size().height()));
            } else {
                const int iFlags =
                    int(pLabel->alignment()) | (pLabel->wordWrap() ? int(Qt::TextWordWrap) : 0);
                needed =
                    QFontMetrics(pLabel->font()).boundingRect(rect, iFlags, pLabel->text()).size();
            }
            if (needed.width() > rect.width() || needed.height() > rect.height()) {
                return QStringLiteral("%1 \"%2\": text %3x%4, room %5x%6")
                    .arg(strWhere, pLabel->text())
                    .arg(needed.width())
                    .arg(needed.height())
                    .arg(rect.width())
                    .arg(rect.height());
            }
            return QString();
        }
        if (auto* pList = qobject_cast<QListWidget*>(pWidget)) {
            QStringList lst;
            for (int i = 0; i < pList->count(); ++i) {
                const QModelIndex index = pList->model()->index(i, 0);
                QStyleOptionViewItem opt;
                opt.initFrom(pList->viewport());
                opt.font = pList->font();
                opt.decorationSize = pList->iconSize();
                opt.features |=
                    QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration;
                const int iNeeded = pList->itemDelegate()->sizeHint(opt, index).width();
                if (iNeeded > pList->viewport()->width()) {
                    lst << QStringLiteral("%1 \"%2\": row %3, room %4")
                               .arg(strWhere, pList->item(i)->text())
                               .arg(iNeeded)
                               .arg(pList->viewport()->width());
                }
            }
            return lst.join('\n');
        }
        return QString();
    }

    // Shows a form the way the main window does, under its title, and lists every text
    // that does not fit.
    QStringList check(CForm* pForm, const QString& strName, const QSize& size,
                      CForm* pOver = nullptr)
    {
        QWidget host;
        QPalette palette = host.palette();
        palette.setColor(QPalette::Window, Qt::black);
        host.setPalette(palette);
        host.setAutoFillBackground(true);
        auto* pLayout = new QVBoxLayout(&host);
        pLayout->setContentsMargins(0, 0, 0, 0);
        pLayout->setSpacing(0);
        auto* pTitle = new CTitle(&host);
        pTitle->setText(pForm->title());
        pLayout->addWidget(pTitle);
        pForm->setParent(&host);
        pLayout->addWidget(pForm, 1);
        host.setFixedSize(size);
        host.show();
        if (pOver) {
            pOver->setParent(&host);
            pOver->setGeometry(pForm->geometry());
            pOver->show();
            pOver->raise();
        }
        // Folders fill from storage once shown.
        QTest::qWait(300);
        pTitle->setText(pForm->title());
        QCoreApplication::processEvents();

        QStringList lst;
        for (QWidget* pWidget : host.findChildren<QWidget*>()) {
            if (!pWidget->isVisible())
                continue;
            const QString strWhy = misfit(pWidget);
            if (!strWhy.isEmpty())
                lst << strName + ": " + strWhy;
        }
        const QString strDir = qEnvironmentVariable("TARVIK_SCREENSHOT_DIR");
        if (!strDir.isEmpty()) {
            const QString strLanguage = m_strLanguage.isEmpty() ? "en" : m_strLanguage;
            host.grab().save(strDir + "/i18n-" + strLanguage + "-" +
                             QString(strName).replace(' ', '-') + ".png");
        }
        return lst;
    }

private Q_SLOTS:
    void initTestCase()
    {
        // Before anything asks for a text.
        m_strLanguage = CTranslations::install(QLocale::system()).left(2);
        const QString strWanted = QLocale::system().name().left(2);
        QCOMPARE(m_strLanguage,
                 CTranslations::languages().contains(strWanted) ? strWanted : QString());
        QVERIFY(m_fixture.start());
        QList<CTarvik> lst;
        for (int i = 0; i < 5; ++i)
            lst << makeTarvik(QString("Lunch %1").arg(i));
        QVERIFY(TarvikTest::saveTarviks(lst, CAsyncTStorage::eFolderInbox));
        QVERIFY(TarvikTest::saveTarviks({makeTarvik("Meet")}, CAsyncTStorage::eFolderSent));
    }

    // English stays as it is, byte for byte; another language leaves no text in English
    // (a text missing from the .ts or the .qm comes back as its source).
    void everyTextTranslated()
    {
        QVERIFY(CTexts::all().size() > 60);
        QStringList lstFailed;
        for (const CTexts::SEntry& entry : CTexts::all()) {
            const QString strSource = QString::fromUtf8(entry.pSource);
            const QString strShown = entry.pAccessor();
            if (m_strLanguage.isEmpty()
                    ? strShown != strSource
                    : strShown == strSource && !sameAsEnglish().contains(strSource)) {
                lstFailed
                    << QString("%1: \"%2\" shown as \"%3\"").arg(entry.pName, strSource, strShown);
            }
        }
        QVERIFY2(lstFailed.isEmpty(), qPrintable(lstFailed.join('\n')));

        for (int i : {1, 2, 5}) {
            const QString strCount = QString::number(i);
            QCOMPARE(CTexts::titleWithCount("T", i), "T (" + strCount + ")");
            const QString strMore = CTexts::andMore(i);
            QVERIFY2(strMore.contains(strCount), qPrintable(strMore));
            QCOMPARE(strMore == " and " + strCount + " more", m_strLanguage.isEmpty());
        }
        if (!m_strLanguage.isEmpty()) {
            QVERIFY(CTexts::andMore(1) != CTexts::andMore(2).replace('2', '1'));
            // Qt's own buttons (message boxes, dialogs) speak the same language.
            QVERIFY(QCoreApplication::translate("QPlatformTheme", "&Yes") != "&Yes");
        }
    }

    void screensFit_data()
    {
        QTest::addColumn<int>("screen");
        QTest::addColumn<QSize>("size");
        const char* const screens[] = {"main menu", "about",         "inbox",         "outbox",
                                       "sent",      "view received", "view sent",     "popups",
                                       "compose",   "register",      "register again"};
        for (const QSize& size : {QSize(800, 450), QSize(360, 720)}) {
            for (int i = 0; i < int(std::size(screens)); ++i) {
                QTest::addRow("%s %dx%d", screens[i], size.width(), size.height()) << i << size;
            }
        }
    }

    // Every button, label and menu row of the screen shows its whole text.
    void screensFit()
    {
        QFETCH(int, screen);
        QFETCH(QSize, size);
        const QString strName = QTest::currentDataTag();
        QStringList lstFailed;
        switch (screen) {
            case 0:
                lstFailed = check(new CMainMenuForm(), strName, size);
                break;
            case 1:
                lstFailed = check(new CAboutForm("1.0.5"), strName, size);
                break;
            case 2:
                lstFailed = check(new CInboxForm(), strName, size);
                break;
            case 3:
                lstFailed = check(new COutboxForm(), strName, size);
                break;
            case 4:
                lstFailed = check(new CSentForm(), strName, size);
                break;
            case 5:
            case 6: {
                CTarvik tarvik = makeTarvik("Lunch");
                tarvik.setTitle(QString());
                lstFailed = check(new CViewTarvikForm(nullptr, tarvik, screen - 5), strName, size);
                break;
            }
            case 8:
                lstFailed = check(new CComposeTarvikForm(nullptr, 1, "+358401234567",
                                                         CTexts::replyPrefix() + " Lunch", "Hi"),
                                  strName, size);
                break;
            case 9:
            case 10:
                lstFailed = check(new CRegisterForm(nullptr, screen - 9, "+358401234567", "Aino"),
                                  strName, size);
                break;
            default:
                for (const QString& strText :
                     {CTexts::newTarviksReceived(), CTexts::sending(), CTexts::sendingFailed(),
                      CTexts::sendingReceivingTarviks(), CTexts::requestingLocation(),
                      CTexts::unableToDetermineLocation(), CTexts::routeCantBeCalculated(),
                      CTexts::registrationFailed()}) {
                    lstFailed << check(new CMainMenuForm(), strName, size,
                                       new CTextPopupForm(nullptr, strText, true));
                }
        }
        QVERIFY2(lstFailed.isEmpty(), qPrintable(lstFailed.join('\n')));
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
