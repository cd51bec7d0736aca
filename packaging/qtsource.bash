# Sourced by the commands that build a Qt from Debian's source package into the user's cache, with the
# project's folder in $project: the parts that these builds share.

. "$project/tools/packages.bash"
. "$project/tools/quietly.bash"

# begin TITLE TREE: moves to the folder of the build, $work, as soon as no other process builds there.
# The result is to be installed as TREE, which is in $installed until it is complete.
begin() {
    title=$1 tree=$2
    work=$tree-build
    installed=$work/installed$tree
    logs=$work
    mkdir -p "$work"
    exec 9>"$work/lock"
    flock -n 9 || { echo "Another build of $title is running; waiting for it."; flock 9; }
    cd "$work"
}

# once NAME COMMAND...: runs a step that later runs skip.
once() {
    local name=$1
    shift
    [ ! -e "$work/$name.done" ] || return 0
    "$@"
    touch "$work/$name.done"
}

# Uses the same servers as the system's packages. The system's lists may lack sources; they are not
# changed.
fetch() {
    echo "Fetching Debian's source package of Qt"
    local key=/usr/share/keyrings/debian-archive-keyring.gpg
    apt-get indextargets --format "deb-src [signed-by=$key] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" \
        'Identifier: Packages' 'Origin: Debian' | sort -u >sources.list
    mkdir -p lists/partial
    local options=(-o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=-
        -o "Dir::State::lists=$work/lists" -o "Dir::Cache=$work" -o "APT::Sandbox::User=$(id -un)")
    quietly lists apt-get "${options[@]}" update
    quietly source apt-get "${options[@]}" source --download-only qt6-base
}

# Applies only the security patches; the others are for Debian itself.
unpack() {
    echo "Unpacking it, with Debian's security patches"
    rm -rf source
    mkdir source
    tar -xf qt6-base_*.orig.tar.xz -C source --strip-components=1
    tar -xf qt6-base_*.debian.tar.xz -C source
    local patch
    grep -i '^cve' source/debian/patches/series >patches
    while read -r patch _; do
        quietly patch patch -d source -p1 -i "debian/patches/$patch"
    done <patches
}

# configure OPTION...: with the host tools of Debian's own Qt.
configure() {
    echo "Configuring it"
    rm -rf build
    quietly configure cmake -G Ninja -S source -B build \
        -DCMAKE_INSTALL_PREFIX="$tree" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON \
        -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
        -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
        -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF "$@"
}

# Shows every step on a terminal, otherwise every percent.
compile() {
    export NINJA_STATUS='Building it: %p (%f of %t) after %e s: '
    if [ -t 1 ]; then
        ninja -C build -j "$(nproc)"
    else
        ninja -C build -j "$(nproc)" 2>&1 | tee build.log | percents \
            || { tail -n 50 build.log >&2; exit 1; }
    fi
}

percents() {
    local what it share rest last=
    while read -r what it share rest; do
        if [ "$what" = Building ] && [ "$share" != "$last" ]; then
            echo "$what $it $share ${rest%% s: *} s"
            last=$share
        fi
    done
}

# install_tree [OPTION]...: installs to $installed, with the licences.
install_tree() {
    echo "Installing it"
    rm -rf installed
    quietly install env DESTDIR="$work/installed" cmake --install build "$@"
    cp -r source/LICENSES "$installed/licenses"
    cp source/debian/copyright "$installed/licenses/debian-copyright"
    # Named in the installed licences, which offer this source.
    (cd source && dpkg-parsechangelog -S Source && dpkg-parsechangelog -S Version) \
        | paste -sd ' ' >"$installed/licenses/source-package"
}

# Moves the complete tree into place.
finish() {
    rm -rf "$tree"
    mv "$installed" "$tree"
    rm -rf "$work"
    echo "$title is ready in $tree"
}
