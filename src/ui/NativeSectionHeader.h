// The header above each block of a section: a semibold title, an optional wrapping subtitle,
// and trailing content on the right.
#pragma once

#include <QWidget>

#include <optional>

class QLabel;

namespace tilmora {

class NativeSectionHeader : public QWidget {
    Q_OBJECT

public:
    // Takes ownership of `trailing`, which may be null.
    NativeSectionHeader(const QString& title, const std::optional<QString>& subtitle,
                        QWidget* trailing = nullptr, QWidget* parent = nullptr);

private:
    QLabel* title_;
    QLabel* subtitle_ = nullptr;
};

} // namespace tilmora
