// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "canimation.h"

#include "uiresources.h"

#include <QPainter>

namespace Dravo {

// A literal owns no heap memory: the client and each plugin that links this library run
// this definition's constructor and destructor on the same object.
const CAnimation::Descriptor CAnimation::PROGRESS_ANIMATION(
    QStringLiteral(":/res_ui/img/refresh_anim.png"), 8, 200);

namespace {
// The slower strip that the application's forms use; kept beside the toolkit's own one.
[[maybe_unused]] const CAnimation::Descriptor s_progressAnimation(":/res/img/progress_anim.png", 8,
                                                                  300);
}  // namespace

CAnimation::CAnimation(const Descriptor& descriptor, QObject* parent)
    : QObject(parent), m_iFramesCount(1), m_iCurrentFrame(0)
{
    connect(&m_timer, &QTimer::timeout, this, &CAnimation::onTimeout);
    load(descriptor);
}

CAnimation::CAnimation(const QString& strPath, int iFramesCount, int iInterval, QObject* parent)
    : CAnimation(Descriptor(strPath, iFramesCount, iInterval), parent)
{
}

bool CAnimation::load(const Descriptor& descriptor)
{
    return load(descriptor.m_strImage, descriptor.m_iFramesCount, descriptor.m_iInterval);
}

bool CAnimation::load(const QString& strPath, int iFramesCount, int iInterval)
{
    stop();
    setFramesCount(iFramesCount);
    setInterval(iInterval);
    m_image = readArt(strPath);
    const bool bLoaded = !m_image.isNull();
    if (!bLoaded) {
        m_image = QImage();
        qWarning("CAnimation::load failed to load %s", qPrintable(strPath));
    }
    return bLoaded;
}

void CAnimation::setFramesCount(int iFramesCount)
{
    Q_ASSERT_X(iFramesCount > 0, "ui/canimation", "framesCount > 0");
    // Release builds keep the invariant instead of dividing by zero later.
    m_iFramesCount = qMax(1, iFramesCount);
}

void CAnimation::setInterval(int iInterval)
{
    Q_ASSERT_X(iInterval >= 0, "ui/canimation", "interval >= 0");
    m_timer.setInterval(qMax(0, iInterval));
}

bool CAnimation::start()
{
    stop();
    if (!frameRect().isValid())
        return false;
    m_timer.start();
    emit started();
    return true;
}

void CAnimation::stop()
{
    if (!m_timer.isActive())
        return;
    m_timer.stop();
    m_iCurrentFrame = 0;
    emit stopped();
}

QRect CAnimation::frameRect() const
{
    if (m_image.isNull() || m_iCurrentFrame < 0 || m_iCurrentFrame >= m_iFramesCount)
        return QRect();
    const int iFrameWidth = m_image.width() / m_iFramesCount;
    QRect rect = m_image.rect();
    rect.setLeft(iFrameWidth * m_iCurrentFrame);
    rect.setWidth(iFrameWidth);
    return rect;
}

void CAnimation::draw(QPainter* pPainter, const QPoint& pos) const
{
    const QRect frame = frameRect();
    if (pPainter && frame.isValid())
        pPainter->drawImage(pos, m_image, frame);
}

void CAnimation::draw(QPainter* pPainter, const QRect& target) const
{
    const QRect frame = frameRect();
    if (pPainter && frame.isValid())
        pPainter->drawImage(target, m_image, frame);
}

void CAnimation::onTimeout()
{
    ++m_iCurrentFrame;
    if (m_iCurrentFrame >= m_iFramesCount)
        m_iCurrentFrame = 0;
    if (m_iFramesCount > 1)
        emit frameChanged();
}

}  // namespace Dravo
