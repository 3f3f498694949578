# qvfilter in a container: cmake --build build --target package && docker build -t qvfilter -f Dockerfile build/packages
FROM debian:bookworm-slim
COPY lib*0_*.deb qvfilter_*.deb /packages/
RUN apt-get update && apt-get install -y --no-install-recommends mesa-vulkan-drivers /packages/*.deb && rm -rf /var/lib/apt/lists/* /packages
WORKDIR /clips
ENTRYPOINT ["qvfilter"]
