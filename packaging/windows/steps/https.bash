# Sourced by packaging/windows/try: the step that fetches a page through Schannel.

# certificate NAME: creates NAME.pem and NAME-key.pem for loopback. The key is RSA, because Wine
# rejects an ECDSA signature if one of its two numbers happens to be short.
certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=$1" \
        -addext subjectAltName=IP:127.0.0.1 -keyout "$https/$1-key.pem" -out "$https/$1.pem" \
        2>/dev/null
}

# serve_page: serves a page on a free port, stored in $port. The response has a Content-Length, as an
# update's has, because Wine's Schannel does not report the end of a connection.
serve_page() {
    printf 'HTTP/1.1 200 OK\r\nContent-Length: 15\r\n\r\nIt came by TLS.' >"$https/page.txt"
    (cd "$https" && exec openssl s_server -accept 127.0.0.1:0 -HTTP -key server-key.pem \
        -cert server.pem) >"$https/listening.out" 2>&1 &
    stage_processes+=($!)
    stage_until 60 grep -q ACCEPT "$https/listening.out" || stage_fail "The HTTPS server did not start."
    port=$(sed -n 's/^ACCEPT .*:\([0-9]*\)$/\1/p' "$https/listening.out")
}

# fetch_page CERTIFICATE: fetches the page, trusting only that certificate.
fetch_page() {
    wine "$home/httpsget.exe" "https://127.0.0.1:$port/page.txt" \
        "$(windows_path "$https/$1.pem")" >"$https/$1.out" 2>&1 || true
}

# lacks TEXT FILE
lacks() {
    ! grep -qF -- "$1" "$2"
}

step_https() {
    say "An HTTPS page is fetched through Schannel, and only from a trusted server"
    after install
    local https=$stage/https port
    rm -rf "$https"
    mkdir "$https"
    certificate server
    certificate other
    serve_page
    cp "$output/bin/httpsget.exe" "$home"
    fetch_page server
    expect "TLS did not use Schannel." grep -q '^schannel' "$https/server.out"
    expect "The page was not received." grep -q "It came by TLS." "$https/server.out"
    fetch_page other
    expect "The other certificate was not tried." grep -q '^schannel' "$https/other.out"
    expect "An untrusted server was accepted." lacks "It came" "$https/other.out"
    rm "$home/httpsget.exe"
}
