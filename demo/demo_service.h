#pragma once

#include "simulator/cloud/simulated_service.h"

/// A cloud service on loopback for the demo: it has a newer client to offer, so that the check of each start finds
/// one (notes in both languages, and an installer that takes a few seconds to come), and lets everybody log in. The
/// client asks it from construction on. GUI thread.
class DemoService
{
public:
    DemoService();

private:
    SimulatedService m_service;
};
