#pragma once

#include <QObject>
#include <QPointer>

namespace velmora {

class FlippedView;

// A small placeholder view controller whose view is a 400 x 200 red panel.
class AlertViewcontroller : public QObject {
    Q_OBJECT
public:
    explicit AlertViewcontroller(QObject* parent = nullptr);
    // Deletes the view unless a parent widget has taken it over.
    ~AlertViewcontroller() override;

    // The controller's view, loaded on first use.
    FlippedView* view();
    bool isViewLoaded() const { return m_view != nullptr; }

protected:
    virtual void loadView();
    virtual void viewDidLoad() {}
    void setView(FlippedView* view) { m_view = view; }

private:
    QPointer<FlippedView> m_view;
};

} // namespace velmora
