#include "app/close_request.h"

// A program that runs can be replaced here.
void heedCloseRequests(MainWindow&) {}
