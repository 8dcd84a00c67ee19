#pragma once

#include <QJsonObject>

/// A record of the cloud service: plain data that reads and writes itself. Any thread, one object at a time.
class BaseModel
{
public:
    /// Takes each known member whose JSON type is the expected one; every other field keeps the value it has.
    virtual void parse(const QJsonObject& object) = 0;
    virtual QJsonObject toJson() const = 0;
    virtual ~BaseModel() = default;

protected:
    BaseModel() = default;
    BaseModel(const BaseModel&) = default;
    BaseModel& operator=(const BaseModel&) = default;
};
