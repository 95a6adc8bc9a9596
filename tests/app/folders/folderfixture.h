// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "casynctstorage.h"
#include "shellfixture.h"

namespace TarvikTest {

// A message with every text field set, at a fixed time.
inline Dravo::CTarvik makeTarvik(const QString& strTitle, int iFlag = 0)
{
    Dravo::CTarvik tarvik;
    tarvik.setFrom("+447700900111");
    tarvik.setTo("+447700900222");
    tarvik.setScreenname("Aino");
    tarvik.setTitle(strTitle);
    tarvik.setNote("Note of " + strTitle);
    tarvik.setDateTime(QDateTime(QDate(2026, 11, 20), QTime(9, 30), Qt::UTC));
    tarvik.setLatitude(60.169857);
    tarvik.setLongitude(24.938379);
    tarvik.setFlag(iFlag);
    return tarvik;
}

// Saves messages through the GUI's storage service and waits for the answer.
inline bool saveTarviks(const QList<Dravo::CTarvik>& tarviks,
                        Dravo::CAsyncTStorage::eFolderName folder)
{
    Dravo::CAsyncTStorage* pStorage = Dravo::CAsyncTStorage::getInstance(1);
    QSignalSpy spy(pStorage, &Dravo::CAsyncTStorage::signalTarviksSaved);
    return pStorage->saveTarviks(tarviks, folder) && spy.wait(5000) && spy.first().at(0).toBool();
}

}  // namespace TarvikTest
