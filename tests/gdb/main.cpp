// The debuggee that is linked with the library.

extern "C" int ShowObjects();

int main()
{
    return ShowObjects();
}
