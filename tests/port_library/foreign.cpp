extern "C" int io_port_creators()
{
    return 0;
}
