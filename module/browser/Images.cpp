#include "module/browser/Images.h"

#include "module/browser/BrowserTree.h"
#include "module/icons/Icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <map>
#include <utility>

namespace {

constexpr int SIDE = 16;

// Two icons beside each other.
class CPairEngine : public QIconEngine {
public:
    CPairEngine(const QIcon& left, const QIcon& right) : m_left(left), m_right(right) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const int side = rect.width() * SIDE / BROWSER_IMAGE_SIZE.width();
        const QRect left(rect.left(), rect.top(), side, rect.height());
        m_left.paint(painter, left, Qt::AlignCenter, mode, state);
        m_right.paint(painter, left.translated(rect.width() - side, 0), Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new CPairEngine(*this); }

private:
    const QIcon m_left;
    const QIcon m_right;
};

QIcon NewImage(int image, int state) {
    const QIcon icon = NewStripIcon(TREE_STRIP, image);
    return state == STATE_NONE ? icon : QIcon(new CPairEngine(NewStripIcon(STATE_STRIP, state), icon));
}

} // namespace

const QIcon& BrowserImage(int image, int state) {
    static std::map<std::pair<int, int>, QIcon> icons;
    const auto [icon, isNew] = icons.try_emplace({image, state});
    if (isNew)
        icon->second = NewImage(image, state);
    return icon->second;
}
