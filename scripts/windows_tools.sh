# What the 32-bit Windows build needs and Debian has no package of; sourced by scripts/windows.
#
# Each tool lies in a folder of its own in the cache, whose name carries a digest of its recipe and of the compiler's
# version: another option or another compiler makes another folder, and the same ones are made once. Removing the cache is
# always safe.

windows_cache=${QUILLBOX_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillbox-windows}
host=i686-w64-mingw32

# The compiler with Windows' own threads has no std::mutex in GCC 12.
windows_compiler_packages=(g++-mingw-w64-i686-posix mingw-w64-i686-dev libz-mingw-w64-dev)
windows_tool_packages=("${windows_compiler_packages[@]}" dpkg-dev debootstrap cmake ninja-build make python3 qtbase5-dev-tools)
qt_version=5.15.8 # of the machine's own moc, uic and rcc, which the cross build runs

# make_tool <name> [what it is made from, but for the recipe…]: sets <name>_root to the folder of the tool, and calls
# make_<name> where it is not there yet.
make_tool() {
    local name=$1 digest folder log
    digest=$({ declare -f "make_$name"; $host-g++-posix -dumpfullversion; echo "${@:2}"; } | sha256sum | cut -c 1-12)
    folder="$windows_cache/$name-$digest"
    log="$windows_cache/$name.log"
    printf -v "${name}_root" %s "$folder"
    if [ -e "$folder/.made" ]; then
        step "Tool $name: there"
        return
    fi
    step "Tool $name: making it (log: $log)"
    local work start=$SECONDS
    rm -rf "$folder"
    mkdir -p "$folder"
    work=$(mktemp -d "$windows_cache/work.XXXXXX")
    # A function that an if calls runs on after a failure; a shell of its own does not.
    (set -e; cd "$work"; "make_$name" "$folder") >"$log" 2>&1 </dev/null &
    if ! wait $!; then
        tail -n 30 "$log" >&2
        rm -rf "$work"
        die "the tool $name could not be made; the log is $log"
    fi
    rm -rf "$work"
    touch "$folder/.made"
    step "Tool $name: made in $((SECONDS - start)) s"
}

# fetch_source <Debian source> <upstream version>: unpacks it into ./<Debian source>, with Debian's patches. The servers
# list more versions than they still have, so the newest that comes counts. The machine's own lists stay as they are.
fetch_source() {
    local apt="$PWD/apt" version
    if [ ! -e "$apt/apt.conf" ]; then
        mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
        apt-get indextargets 'Identifier: Packages' --format \
            'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(SITE) $(RELEASE) $(COMPONENT)' |
            sort -u >"$apt/sources.list"
        printf '%s\n' "Dir::Etc::sourcelist \"$apt/sources.list\";" 'Dir::Etc::sourceparts "-";' \
            "Dir::State::lists \"$apt/lists\";" "Dir::Cache \"$apt/cache\";" 'APT::Sandbox::User "root";' >"$apt/apt.conf"
        export APT_CONFIG="$apt/apt.conf"
        apt-get update
    fi
    for version in $(apt-cache showsrc "$1" | sed -n 's/^Version: //p' | sort -ruV); do
        [[ "$version" == *"$2"* ]] || continue
        apt-get source --download-only "$1=$version" || continue
        dpkg-source --no-check -x "$1"_*.dsc "$1"
        return
    done
    echo "no version $2 of $1 is to be had"
    return 1
}

make_qt() {
    fetch_source qtbase-opensource-src $qt_version
    sed -i 's/-lSecur32/-lsecur32/; s/-lCrypt32/-lcrypt32/' qtbase-opensource-src/src/network/ssl/ssl.pri # no such case here
    mkdir build
    cd build
    ../qtbase-opensource-src/configure -opensource -confirm-license -prefix "$1" -xplatform win32-g++ \
        -device-option CROSS_COMPILE=$host- -external-hostbindir /usr/lib/qt5/bin -release -shared \
        -no-opengl -no-vulkan -no-dbus -no-icu -no-glib -no-openssl -schannel \
        -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz -qt-pcre -qt-doubleconversion \
        -no-feature-sql -no-feature-tabletevent -no-feature-direct2d -no-feature-printer -no-feature-concurrent \
        -no-feature-dom -nomake examples -nomake tests -nomake tools -make libs
    make sub-src-qmake_all
    local parts=(sub-corelib sub-winmain sub-gui sub-network sub-widgets sub-testlib sub-plugins)
    make -C src -s -j "$(nproc)" "${parts[@]}"
    make -C src -s "${parts[@]/%/-install_subtargets}"
    make -s install_mkspecs
    cp bin/qmake "$1/bin/" # CMake's files of Qt want to see it
    # Whatever runs with Qt needs these too, so one folder is enough for the search path.
    cp "$($host-g++-posix -print-file-name=libgcc_s_dw2-1.dll)" "$($host-g++-posix -print-file-name=libstdc++-6.dll)" \
        "$($host-g++-posix -print-file-name=libwinpthread-1.dll)" /usr/$host/lib/zlib1.dll "$1/bin/"
}

# The port's library; static, so that the port is one file.
make_libusb() {
    fetch_source libusb-1.0 1.0.26
    mkdir build
    cd build
    ../libusb-1.0/configure --host=$host --prefix="$1" --disable-shared CC=$host-gcc-posix CXX=$host-g++-posix
    make -s -j "$(nproc)"
    make -s install
}

# Of the service in software and of tests; the client uses Windows' own TLS.
make_openssl() {
    fetch_source openssl 3.0
    cd openssl
    perl Configure mingw --cross-compile-prefix=$host- CC=gcc-posix --prefix="$1" --libdir=lib \
        no-shared no-tests no-dso no-engine no-legacy no-asm no-aria no-bf no-camellia no-cast no-idea no-seed \
        no-rc2 no-rc4 no-md4 no-mdc2 no-whirlpool no-sm2 no-sm3 no-sm4 no-gost no-srp no-cmp no-cms no-dtls
    make -s build_generated
    make -s -j "$(nproc)" libcrypto.a libssl.a
    mkdir -p "$1/lib"
    cp libcrypto.a libssl.a "$1/lib/"
    cp -r include "$1/"
}

make_httplib() {
    fetch_source cpp-httplib 0.11.4
    cd cpp-httplib
    python3 "$PWD/split.py"
    $host-g++-posix -std=c++17 -O2 -D_WIN32_WINNT=0x0A00 -DCPPHTTPLIB_OPENSSL_SUPPORT -DCPPHTTPLIB_ZLIB_SUPPORT \
        -I"$openssl_root/include" -c out/httplib.cc -o httplib.o
    mkdir -p "$1/lib" "$1/include"
    $host-ar rcs "$1/lib/libcpp-httplib.a" httplib.o
    cp out/httplib.h "$1/include/"
}

# Qt 5's TIFF plug-in is to be had no more; Qt 6's is the same handler with pictures of floating-point numbers added,
# which Qt 5 has no formats for.
make_tiff() {
    fetch_source tiff 4.5.0
    fetch_source qt6-imageformats 6.4
    cmake -S tiff -B libtiff -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/windows-toolchain.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$PWD/installed" -DBUILD_SHARED_LIBS=OFF -Dzlib=ON \
        -Djpeg=OFF -Dlzma=OFF -Dzstd=OFF -Dwebp=OFF -Djbig=OFF -Dlerc=OFF -Dlibdeflate=OFF -Dcxx=OFF \
        -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF
    cmake --build libtiff --target install
    cd qt6-imageformats/src/plugins/imageformats/tiff
    sed -i -E 's/QImage::Format_RGB[AX](16|32)FPx4(_Premultiplied)?/QImage::Format_Invalid/g; s/QList</QVector</g
        s/metaType\(\).id\(\)/userType()/
        s/QImageIOHandler::allocateImage\((d->size, format), image\)/!(*image = QImage(\1)).isNull()/' qtiffhandler.cpp
    /usr/lib/qt5/bin/moc main.cpp -o main.moc
    mkdir -p "$1/plugins/imageformats"
    $host-g++-posix -std=c++17 -O2 -msse2 -mfpmath=sse -shared -s -DQT_PLUGIN -DQT_NO_DEBUG \
        -I. -I"$OLDPWD/installed/include" -I"$qt_root/include" -I"$qt_root/include/QtCore" -I"$qt_root/include/QtGui" \
        main.cpp qtiffhandler.cpp -o "$1/plugins/imageformats/qtiff.dll" \
        "$OLDPWD/installed/lib/libtiff.a" /usr/$host/lib/libz.a -L"$qt_root/lib" -lQt5Gui -lQt5Core
}

# A Debian with wine, and a prefix in it that has been started once. Runs see it through an overlay and change nothing.
make_wine() {
    local mirror
    mirror=$(apt-get indextargets --format '$(SITE)' 'Identifier: Packages' | grep -v security | head -n 1)
    debootstrap --arch=i386 --variant=minbase bookworm "$1" "$mirror"
    chroot "$1" apt-get update
    DEBIAN_FRONTEND=noninteractive chroot "$1" apt-get install -y --no-install-recommends wine wine32 libgnutls30 \
        ca-certificates fonts-dejavu-core fonts-liberation fonts-noto-cjk xvfb xauth openbox xdotool x11-utils imagemagick
    chroot "$1" apt-get clean
    # The platform "offscreen" reads one flat folder.
    mkdir "$1/usr/share/fonts/flat"
    cp "$1"/usr/share/fonts/truetype/dejavu/*.ttf "$1"/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc \
        "$1/usr/share/fonts/flat/"
    cp "$root/packaging/windows/wine.reg" "$1/root/"
    # A crash waits in the debugger for ever where it is not switched off.
    unshare -m -p -f --kill-child --propagation private chroot "$1" sh -ec 'mount -t proc proc /proc
        export HOME=/root WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
        wineboot -i; wine regedit /S /root/wine.reg; wineserver -w'
}

make_windows_tools() {
    mkdir -p "$windows_cache"
    local registry
    registry=$(<"$root/packaging/windows/wine.reg")
    make_tool wine "$registry" & # waits for the network most of the time
    make_tool qt "$qt_version"
    make_tool libusb
    make_tool openssl
    make_tool httplib "$openssl_root"
    make_tool tiff "$qt_root"
    wait $! || die "there is no Debian with wine"
    make_tool wine "$registry" >/dev/null # for its variable
}

# Where the machine's own Qt says what its tools are: host_cmake_folder <package>
host_cmake_folder() {
    local folder
    folder=$(dpkg -L qttools5-dev qtbase5-dev | grep "/cmake/$1$") || die "there is no $1 of the machine's own Qt"
    printf '%s\n' "$folder"
}
