#pragma once

#include "cloud/models/base_model.h"

#include <QString>

/// A category that one can subscribe to.
class SubscriptionCategoryModel : public BaseModel
{
public:
    void parse(const QJsonObject& object) override;
    QJsonObject toJson() const override;

    /// Writes the fields to standard output, a line each.
    void dump() const;

    int categoryId = 0;
    QString name;
};
