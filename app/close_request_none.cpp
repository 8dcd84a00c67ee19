#include "app/close_request.h"

void heedCloseRequests(MainWindow&) {}
