#pragma once

#include <QString>

/// The looks of the paper window: white, dark ink and thin grey rules, as the editor has them.
QString paperStyle();
