#include "views/AlertViewcontroller.h"

#include "views/FlippedView.h"

#include <QPainter>

namespace velmora {

AlertViewcontroller::AlertViewcontroller(QObject* parent)
    : QObject(parent) {}

AlertViewcontroller::~AlertViewcontroller() {
    if (m_view && !m_view->parent())
        delete m_view.data();
}

FlippedView* AlertViewcontroller::view() {
    if (!m_view) {
        loadView();
        viewDidLoad();
    }
    return m_view;
}

void AlertViewcontroller::loadView() {
    setView(new FlippedView(QRect(0, 0, 400, 200), [](FlippedView* view, const QRect& dirty) {
        QPainter(view).fillRect(dirty, Qt::red);
    }));
}

} // namespace velmora
