#pragma once

#include "simulator/cloud/simulated_service.h"

/// A cloud service on loopback that has a newer client to offer, so that the check of each start finds one: notes in
/// both languages, and an installer that takes a few seconds to come. The client asks it from construction on. GUI
/// thread.
class UpdateOffer
{
public:
    UpdateOffer();

private:
    SimulatedService m_service;
};
